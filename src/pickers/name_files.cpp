#include "pickers/name_files.h"

#include <algorithm>
#include <utility>

namespace kova::pickers {
namespace {

// A file of names has a few hundred bytes; what is larger is another file.
constexpr std::size_t kLargest = 65536;

}  // namespace

std::vector<NumberedName> ReadNameFile(os::Files& files, std::string_view databaseFolder,
                                       std::string_view fileName) {
  std::vector<NumberedName> names;
  std::string content;
  if (databaseFolder.empty()) return names;
  const std::string path = std::string(databaseFolder) + std::string(fileName);
  if (files.Read(path, kLargest, content) != os::FileOutcome::kOk) return names;
  int number = 0;
  for (std::size_t from = 0; from < content.size(); ++number) {
    const std::size_t end = std::min(content.find('\n', from), content.size());
    std::string line = content.substr(from, end - from);
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) names.push_back({std::move(line), number});
    from = end + 1;
  }
  return names;
}

std::string ListText(const NumberedName& name) { return name.name + " " + std::to_string(name.number); }

}  // namespace kova::pickers
