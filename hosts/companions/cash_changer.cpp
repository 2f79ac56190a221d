// CashChanger: stands in for the program of a cash changer. It moves no money: it keeps a line of what it was
// told.

#include <cstdlib>
#include <string>

#include "hosts/companions/companion.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"

namespace kova::companions {
namespace {

constexpr std::size_t kLargestDrawer = 1U << 20;

void Main(std::string_view line) {
  const std::string drawer = EnvironmentText("KOVA_DRAWER");
  if (!line.starts_with("/AMOUNT:") || line.find(" /DEVICE:") == std::string_view::npos || drawer.empty())
    throw CommandLineError(
        "CashChanger /AMOUNT:yen /DEVICE:name [/METHOD:payment method], with the file to keep it in in "
        "KOVA_DRAWER");
  os::SleepMilliseconds(std::atoi(EnvironmentText("KOVA_CHANGER_WORK").c_str()));
  os::Files& files = os::RealFiles();
  std::string kept;
  const os::FileOutcome read = files.Read(drawer, kLargestDrawer, kept);
  const bool isReadable = read == os::FileOutcome::kOk || read == os::FileOutcome::kNotThere;
  if (!isReadable || files.Replace(drawer, kept.append(line).append("\r\n")) != os::FileOutcome::kOk)
    throw CompanionError("cannot keep it in the file that KOVA_DRAWER names");
}

}  // namespace
}  // namespace kova::companions

int main(int argc, char** argv) {
  return kova::companions::RunCompanion("CashChanger", argc, argv, kova::companions::Main);
}
