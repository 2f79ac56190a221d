#pragma once

// Days of the Gregorian calendar as numbers, to count with.

namespace kova::foundation {

struct CivilDay {
  int year = 0;
  int month = 0;
  int day = 0;
  bool operator==(const CivilDay&) const = default;
};

/// DayNumber of 1970-01-01.
inline constexpr int kDayOf1970 = 25569;

/// Days since 1899-12-30, for the years 1 to 9999. A month or day that the calendar lacks counts on into the
/// days behind it.
[[nodiscard]] int DayNumber(const CivilDay& day);

/// The day of a number, of the same years.
[[nodiscard]] CivilDay CivilDayOf(int dayNumber);

/// True for a day of the years 1 to 9999 that the calendar has.
[[nodiscard]] bool IsRealDay(const CivilDay& day);

/// 1 for Sunday to 7 for Saturday; 0 for a day that the calendar lacks.
[[nodiscard]] int WeekdayOf(const CivilDay& day);

}  // namespace kova::foundation
