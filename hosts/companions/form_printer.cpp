// FormPrinter: stands in for the suite's form-printing program. It prints nothing: each form becomes a page,
// an HTML file that a browser shows and prints.

#include <set>
#include <string>
#include <vector>

#include "hosts/companions/form_page.h"
#include "hosts/console/console.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/text932/cp932.h"
#include "printing/print_data_reader.h"

namespace kova::companions {
namespace {

using os::FileOutcome;

constexpr int kPause = 100;  // milliseconds
constexpr std::string_view kUsage =
    "FormPrinter FILE [OUT]: makes the page of one print data file\n"
    "FormPrinter FOLDER [OUT [MILLISECONDS]]: takes up every \".tmp\" in the folder, for that long, and "
    "removes it "
    "once its page is made\n"
    "  Pages go to the folder OUT, else beside the file. A file that does not follow the format stays.";

std::string Utf8(std::string_view text) { return text932::ToUtf8(text); }

std::string PagePath(std::string_view file, const std::string& out) {
  const std::string folder = out.empty() ? std::string(os::FolderOf(file)) : out;
  const std::string_view name = os::FileNameOf(file);
  const std::size_t dot = text932::FindLast(name, '.');
  return os::JoinPath(folder, std::string(name.substr(0, dot)) + ".html");
}

/// Makes the page of a file, whole or not at all. True when it is there; else says why not.
bool MakePage(std::string_view file, const std::string& out) {
  std::string bytes;
  const FileOutcome read = os::RealFiles().Read(file, printing::kLargestPrintData, bytes);
  if (read != FileOutcome::kOk) {
    hosts::PrintError(Utf8(file) + ": cannot be read\n");
    return false;
  }
  printing::PrintData data;
  if (const auto fault = printing::ReadPrintData(bytes, data)) {
    hosts::PrintError(Utf8(file) + ":" + std::to_string(fault->line) + ": " + fault->reason + "\n");
    return false;
  }
  const std::string page = PagePath(file, out);
  if (os::RealFiles().Replace(page, FormPage(data)) != FileOutcome::kOk) {
    hosts::PrintError(Utf8(page) + ": cannot be written\n");
    return false;
  }
  hosts::Print(Utf8(page) + "\n");
  return true;
}

/// Takes up what lies in the folder but for the files in `stayed`, to which it adds those that stay.
void TakeUp(const std::string& folder, const std::string& out, std::set<std::string>& stayed) {
  std::vector<std::string> names;
  if (os::RealFiles().List(folder, names) != FileOutcome::kOk) stayed.insert("");
  for (const std::string& name : names) {
    if (!name.ends_with(".tmp") || stayed.contains(name)) continue;
    const std::string file = os::JoinPath(folder, name);
    if (!MakePage(file, out) || os::RealFiles().Delete(file) != FileOutcome::kOk) stayed.insert(name);
  }
}

int Main(const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments.size() > 3) throw hosts::UsageError(std::string(kUsage));
  const std::string what = hosts::TextArgument(hosts::AbsoluteName(arguments[0]), "FILE");
  const std::string out =
      arguments.size() > 1 ? hosts::TextArgument(hosts::AbsoluteName(arguments[1]), "OUT") : std::string();
  if (!out.empty() && os::RealFiles().MakeFolders(out) != FileOutcome::kOk)
    throw hosts::UsageError("cannot make the folder " + arguments[1]);
  if (os::RealFiles().Kind(what) != os::PathKind::kFolder) return MakePage(what, out) ? 0 : 1;
  const long long duration =
      arguments.size() > 2 ? hosts::NumberArgument(arguments[2], "MILLISECONDS", 0, 86400000) : 0;
  const std::int64_t end = os::MonotonicMilliseconds() + duration;
  std::set<std::string> stayed;
  TakeUp(what, out, stayed);
  while (os::MonotonicMilliseconds() < end) {
    os::SleepMilliseconds(kPause);
    TakeUp(what, out, stayed);
  }
  return stayed.empty() ? 0 : 1;
}

}  // namespace
}  // namespace kova::companions

int main(int argc, char** argv) {
  return kova::hosts::RunConsole("FormPrinter", argc, argv, kova::companions::Main);
}
