// kovacall: calls one exported operation and prints what it gives. The support engineer's tool.

#include "hosts/console/console.h"
#include "hosts/kovacall/backup_commands.h"
#include "hosts/kovacall/board_commands.h"
#include "hosts/kovacall/controls_commands.h"
#include "hosts/kovacall/exchange_commands.h"
#include "hosts/kovacall/filler_commands.h"
#include "hosts/kovacall/notice_commands.h"
#include "hosts/kovacall/operation.h"
#include "hosts/kovacall/postal_commands.h"
#include "hosts/kovacall/print_commands.h"
#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {
namespace {

constexpr std::string_view kUsage =
    "kovacall [--app FILE.ini] OPERATION ARGUMENT...\n"
    "  calls one operation with the application profile FILE.ini; prints its result on one line (an\n"
    "  operation without a result prints none), then each out-parameter as name=value. All text is UTF-8;\n"
    "  control characters appear, and may be given, as their pictures (\xE2\x90\x89 tab, \xE2\x90\x8D "
    "\xE2\x90\x8A line end).\n"
    "  Exit code 2 and one line on standard error: the call cannot be understood or the database cannot be\n"
    "  opened. A result of the record store other than 0 is a result, with exit code 0.\n"
    "kovacall list\n"
    "  prints every operation with its arguments\n";

std::vector<TableCommand> Commands() {
  std::vector<TableCommand> all = TableCommands();
  all.insert(all.end(), BackupCommands().begin(), BackupCommands().end());
  all.insert(all.end(), BoardCommands().begin(), BoardCommands().end());
  all.insert(all.end(), ExchangeCommands().begin(), ExchangeCommands().end());
  all.insert(all.end(), NoticeCommands().begin(), NoticeCommands().end());
  all.insert(all.end(), PrintCommands().begin(), PrintCommands().end());
  all.insert(all.end(), PostalCommands().begin(), PostalCommands().end());
  all.insert(all.end(), ControlsCommands().begin(), ControlsCommands().end());
  return all;
}

std::string Line(const TableCommand& command) {
  return std::string(command.name) + (command.arguments.empty() ? "" : " ") + std::string(command.arguments);
}

std::string Usage() {
  std::string text(kUsage);
  for (const TableCommand& command : Commands()) {
    text += "kovacall " + Line(command) + "\n  " + std::string(command.meaning) + "\n";
  }
  return text;
}

std::string Line(const Operation& operation) {
  std::string line(operation.name);
  for (const Parameter& each : operation.parameters)
    line += " " + (each.fields.empty() ? each.name + ":" + each.type : each.fields);
  if (!operation.resultType.empty()) line += " -> " + std::string(operation.resultType);
  return line;
}

/// Exported operations that a command line cannot call, and why.
struct Uncallable {
  std::string_view name;
  std::string_view why;
};
constexpr std::string_view kWindow = "opens a window of a host";
constexpr std::string_view kMap = "works on a host's table of places; CallPostToMap does all of it";
constexpr std::string_view kBox = "frees what a host's box or array holds";
constexpr std::string_view kPrivate = "is the library's own";
constexpr Uncallable kUncallable[] = {
    {"CallCashless", kWindow},
    {"CallPostMap", kMap},
    {"CashlessOrCash", kWindow},
    {"CreatePrintTmpOfSale", "is what CreatePrintTmp does here"},
    {"ExecMail", kPrivate},
    {"FillReservationTemplate", "is FillTemplate here"},
    {"FreeComboItemData", kBox},
    {"FreeIntroDoctors", kBox},
    {"FreePlaceList", kMap},
    {"GetGlobalSettingFile", kPrivate},
    {"GetPostList", kMap},
    {"InitPostList", kMap},
    {"MailTemplateTree", kWindow},
    {"NewPlaceList", kMap},
    {"OpenListItemSetting", kWindow},
    {"OpenListItemSettingSort", kWindow},
    {"OpenMailSetting", kWindow},
    {"OpenMailTemplateSetting", kWindow},
    {"OpenSettingDBPath", kWindow},
    {"OpenVisitFlowDialog", "opens a window of a host; board and board-move do its work"},
    {"Payment", kWindow},
    {"RemapPostList", kMap},
    {"ResetPostList", kMap},
    {"SetAppoPatientInfo2", "fills a host's tables"},
    {"SetPostData", kMap},
};

void List() {
  for (const auto* operations : {&Operations(), &FillerOperations(), &PostalOperations()})
    for (const Operation& operation : *operations) Print(Line(operation) + "\n");
  for (const TableCommand& command : Commands()) Print(Line(command) + "\n");
  for (const Uncallable& each : kUncallable)
    Print("(" + std::string(each.name) + " " + std::string(each.why) + ")\n");
}

void PrintReply(const Reply& reply) {
  if (reply.result) Print(*reply.result + "\n");
  for (const auto& [name, value] : reply.outs) Print(name + "=" + value + "\n");
}

/// True when there is an operation or command of that name; it has run then.
bool Run(const std::string& name, const std::vector<std::string>& arguments, Practice& practice) {
  for (const auto* operations : {&Operations(), &FillerOperations(), &PostalOperations()}) {
    for (const Operation& operation : *operations) {
      if (operation.name != name) continue;
      PrintReply(operation.call(arguments, practice));
      return true;
    }
  }
  for (const TableCommand& command : Commands()) {
    if (command.name != name) continue;
    command.run(arguments, practice);
    return true;
  }
  return false;
}

int Main(const std::vector<std::string>& arguments) {
  Practice practice;
  std::vector<std::string> rest = arguments;
  if (!rest.empty() && rest.front() == "--app") {
    if (rest.size() < 2) throw UsageError("--app needs a file name");
    practice.UseProfile(rest[1]);
    rest.erase(rest.begin(), rest.begin() + 2);
  }
  if (rest.empty()) throw UsageError("needs an operation; \"kovacall help\" shows the usage");
  const std::string name = rest.front();
  rest.erase(rest.begin());
  if (name == "help" || name == "--help") return Print(Usage()), 0;
  if (name == "list") return List(), 0;
  try {
    if (Run(name, rest, practice)) return 0;
  } catch (const UsageError& error) {
    throw UsageError(ShowControls(name) + ": " + error.what());
  }
  for (const Uncallable& each : kUncallable) {
    if (each.name == name)
      throw UsageError(name + " cannot be called from here: it " + std::string(each.why));
  }
  throw UsageError("there is no operation \"" + ShowControls(name) + "\"; \"kovacall list\" shows them");
}

}  // namespace
}  // namespace kova::hosts

int main(int argc, char** argv) { return kova::hosts::RunConsole("kovacall", argc, argv, kova::hosts::Main); }
