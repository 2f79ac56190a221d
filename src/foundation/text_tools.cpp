#include "foundation/text_tools.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/string_table.h"

namespace kova::foundation {

bool IsNumeric(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::int32_t Str2Long(std::string_view text) {
  std::string digits(text);
  std::erase(digits, ',');
  return ReadInteger(digits);
}

std::int16_t GetTimeSpan(std::int16_t later, std::int16_t earlier) {
  // Computed wide; a single wrap at the end gives the same as one at every step.
  int minutes = later % 100 - earlier % 100 + 60;
  if (minutes >= 60) minutes = minutes / 60 * 100 + minutes % 60;
  return static_cast<std::int16_t>(minutes - earlier / 100 * 100 + later / 100 * 100 - 100);
}

std::string_view GetDayOfWeekString(int weekday) {
  constexpr std::string_view kNames[] = {"日", "月", "火", "水", "木", "金", "土"};
  return weekday >= 1 && weekday <= 7 ? kNames[weekday - 1] : std::string_view();
}

std::string_view GetPrivilegeName(int privilege) {
  if (privilege == 1) return StringTableText(kTextAdministrator);
  return StringTableText(privilege == 0 ? kTextUser : kTextUnknownPrivilege);
}

}  // namespace kova::foundation
