// reception: a small host application on a practice, and the example of how one uses the library.
//
//   reception --app FILE.ini

#include <windows.h>
#include <commctrl.h>

#include <filesystem>

#include "hosts/console/console.h"
#include "hosts/console/practice.h"
#include "hosts/reception/reception.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/program.h"

namespace kova::hosts {
namespace {

int Main(const std::vector<std::string>& arguments) {
  if (arguments.size() != 2 || arguments[0] != "--app") throw UsageError("usage: reception --app FILE.ini");
  Practice practice;
  practice.UseProfile(AbsoluteName(arguments[1]));
  // The suite's companion programs are found from the program's folder.
  std::filesystem::current_path(os::ToFilesystemPath(os::ProgramFolder()));
  const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_DATE_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&classes);
  practice.Database();  // says now what is wrong with it, not in the middle of the day
  Reception(practice).Run();
  return 0;
}

}  // namespace
}  // namespace kova::hosts

int main(int argc, char** argv) {
  return kova::hosts::RunConsole("reception", argc, argv, kova::hosts::Main);
}
