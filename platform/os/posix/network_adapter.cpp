#include "platform/os/network_adapter.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <vector>

namespace kova::os {
namespace {

constexpr char kNone[] = "00-00-00-00-00-00";

std::string FirstLine(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::string line;
  std::getline(in, line);
  return line;
}

}  // namespace

std::string NetworkAdapterAddress() {
  std::vector<std::filesystem::path> adapters;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/sys/class/net", error))
    adapters.push_back(entry.path());
  std::sort(adapters.begin(), adapters.end());
  std::string found = kNone;
  for (const auto& adapter : adapters) {
    std::string address = FirstLine(adapter / "address");
    for (char& c : address)
      c = c == ':' ? '-' : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (address.size() != sizeof kNone - 1 || address == kNone) continue;
    if (FirstLine(adapter / "operstate") == "up") return address;
    if (found == kNone) found = address;
  }
  return found;
}

}  // namespace kova::os
