#pragma once

namespace kova::foundation {

/// A date of the Gregorian calendar, carried back before its beginning.
struct CivilDate {
  int year = 0;
  int month = 0;
  int day = 0;
};

/// Days since 1970-01-01. A day beyond the month's end counts on into the next month. For the years 1 to
/// 9999.
[[nodiscard]] int DayNumber(int year, int month, int day);

/// The other way round, for the same years.
[[nodiscard]] CivilDate DateOfDay(int dayNumber);

}  // namespace kova::foundation
