#pragma once

// Dates by Japanese eras and back, by this system's own table; dates as people type them.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/civil_day.h"

namespace kova::controls {

/// A Western date; 0 is a part that is not set. Nothing says that the calendar has such a day.
using WesternDate = foundation::CivilDay;

struct Era {
  std::string_view name;
  char letter;            // what it is called for short; blank for none
  std::int32_t firstDay;  // year * 10000 + month * 100 + day; 0 for Western years
};

/// The eras in the order of the drop-down list. The first days of 大正 and 昭和 are the day after the change
/// of era, and 明治 begins with its year: deliberate, stored dates are shown by them.
inline constexpr std::array<Era, 6> kEras = {{{"西暦", ' ', 0},
                                              {"明治", 'M', 18680000},
                                              {"大正", 'T', 19120731},
                                              {"昭和", 'S', 19261226},
                                              {"平成", 'H', 19890108},
                                              {"令和", 'R', 20190501}}};
inline constexpr int kNoEra = -1;
inline constexpr int kWestern = 0;

/// A date as the fields show it: an index into kEras or kNoEra, and the year within that era. 0 is an empty
/// field.
struct EraDate {
  int era = kNoEra;
  int year = 0;
  int month = 0;
  int day = 0;
  bool operator==(const EraDate&) const = default;
};

/// The last era that does not begin after the date. Without a year there is neither era nor year; month and
/// day are taken over as they are.
[[nodiscard]] EraDate ToEra(const WesternDate& date);

/// Nothing is checked: month 13 comes through, and 平成 40 is 2028. Without an era the year is taken as it
/// is.
[[nodiscard]] WesternDate ToWestern(const EraDate& date);

/// "昭和50年1月1日", "令和元年5月1日", "西暦1867年12月31日"; empty for a date that lacks a part.
[[nodiscard]] std::string EraText(const WesternDate& date);

/// The era of that name or letter (either case); nothing when there is none.
[[nodiscard]] std::optional<int> FindEra(std::string_view text);

/// The number that a field holds: digits of either width, 元 for 1; 0 when it is none.
[[nodiscard]] int NumberInField(std::string_view text);

/// A date that was typed at once: "S50.1.1", "昭和50年1月1日", "R6/4/1", "令和元年5月1日", "20240401",
/// "2024-04-01", in either width. A Western date without 西暦 comes by its era; "S50" gives era and year
/// alone. Month and day are not checked. Nothing for any other text, a mere number among them.
[[nodiscard]] std::optional<EraDate> ReadDate(std::string_view text);

/// What stands beside the fields: "(水)"; for the date of a birth that is not after `today` also the age,
/// "(水) 49歳"; or what is wrong with the date, "暦にない日付" or "元号の期間外". Empty as long as it lacks a
/// part.
///
/// @param today  to reckon an age by; nothing for none
[[nodiscard]] std::string NoteOf(const EraDate& date, const std::optional<WesternDate>& today);

enum class DateField { kYear, kMonth, kDay };

/// The number after `number` in a field (`step` 1) or before it (-1). Months and days go round; a year does
/// not go below 1.
[[nodiscard]] int CountedOn(DateField field, int number, int step);

}  // namespace kova::controls
