#include "hosts/kovacall/controls_commands.h"

#include <afxwin.h>

#include "controls/era_date.h"
#include "controls/list_columns.h"
#include "hosts/console/console.h"
#include "platform/os/application_profile.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using controls::EraDate;
using controls::PlacedColumn;
using Arguments = std::vector<std::string>;

constexpr int kMostYears = 999999;

std::string Utf8(std::string_view text) { return ShowControls(text932::ToUtf8(text)); }

void PrintValue(const std::string& name, const std::string& value) { Print(name + "=" + value + "\n"); }
void PrintValue(const std::string& name, int value) { PrintValue(name, std::to_string(value)); }

// ---- era

void PrintEra(const controls::WesternDate& date) {
  const EraDate shown = controls::ToEra(date);
  PrintValue("era", shown.era < 0 ? "" : Utf8(controls::kEras[static_cast<std::size_t>(shown.era)].name));
  PrintValue("year", shown.year);
  PrintValue("month", shown.month);
  PrintValue("day", shown.day);
  PrintValue("text", Utf8(controls::EraText(date)));
  PrintValue("note", Utf8(controls::NoteOf(shown, {})));
}

void PrintWestern(const EraDate& date) {
  const controls::WesternDate western = controls::ToWestern(date);
  PrintValue("year", western.year);
  PrintValue("month", western.month);
  PrintValue("day", western.day);
  PrintValue("note", Utf8(controls::NoteOf(date, {})));
}

void RunEra(const Arguments& arguments, Practice&) {
  if (arguments.size() == 1) {
    const auto number = static_cast<int>(NumberArgument(arguments[0], "YYYYMMDD", 0, 99999999));
    return PrintEra({number / 10000, number / 100 % 100, number % 100});
  }
  if (arguments.size() != 4) throw UsageError("takes YYYYMMDD, or an era, year, month and day");
  const auto era = controls::FindEra(TextArgument(arguments[0], "ERA"));
  if (!era) throw UsageError("ERA: a name or one of M T S H R, not " + ShowControls(arguments[0]));
  const auto part = [&](std::size_t i, const char* name) {
    return static_cast<int>(NumberArgument(arguments[i], name, 0, kMostYears));
  };
  PrintWestern({*era, part(1, "Y"), part(2, "M"), part(3, "D")});
}

// ---- columns

void PrintItems(const os::ApplicationProfile& profile, const std::string& section) {
  for (int column = 0; column < controls::kMostPositions; ++column) {
    const std::string key = "Item" + std::to_string(column);
    if (!profile.GetString(section, key, "").empty())
      PrintValue(key, controls::IsItemShown(profile, section, column) ? 1 : 0);
  }
}

void PrintOptions(const os::ApplicationProfile& profile) {
  const controls::PatientListChoices choices = controls::ReadPatientListChoices(profile);
  for (std::size_t i = 0; i < choices.size(); ++i)
    PrintValue(std::string(controls::kPatientListOptions[i].key), choices[i] ? 1 : 0);
}

void RunColumns(const Arguments& arguments, Practice&) {
  if (arguments.empty() || arguments.size() > 2) throw UsageError("takes SECTION [COUNT]");
  const std::string section = TextArgument(arguments[0], "SECTION");
  const char* file = AfxGetApp()->m_pszProfileName;
  const os::IniApplicationProfile profile(os::RealFiles(), file == nullptr ? "" : file);
  const int count =
      arguments.size() == 1
          ? controls::StoredPositions(profile, section)
          : static_cast<int>(NumberArgument(arguments[1], "COUNT", 0, controls::kMostPositions));
  Print("position\tcolumn\twidth\tshown\n");
  int position = 0;
  for (const PlacedColumn& each : controls::ReadColumns(profile, section, count)) {
    const std::int32_t width = each.IsShown() ? each.width : -each.width;
    Print(std::to_string(position++) + "\t" + std::to_string(each.column) + "\t" + std::to_string(width) +
          "\t" + (each.IsShown() ? "1" : "0") + "\n");
  }
  PrintItems(profile, section);
  if (section == controls::kPatientSection) PrintOptions(profile);
}

}  // namespace

const std::vector<TableCommand>& ControlsCommands() {
  static const std::vector<TableCommand> commands = {
      {"era", "YYYYMMDD | ERA Y M D",
       "a Western date by its era, or the Western date of an era's year, month and day; nothing is checked, "
       "but what cannot be is noted",
       &RunEra},
      {"columns", "SECTION [COUNT]",
       "what a list with that section of the application profile shows: position, column, width and 1 for "
       "shown; COUNT columns, or as many as are stored; then the stored Item numbers and, for PatientInfo, "
       "the options",
       &RunColumns},
  };
  return commands;
}

}  // namespace kova::hosts
