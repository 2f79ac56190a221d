#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kova::sample {

/// A day, counted from 1970-01-01.
using Day = int;

/// -1 when the text is no date YYYYMMDD of the years 1970 to 9998.
Day DayOf(std::string_view date);
/// Days before 1970 are negative and have their date too.
std::string DateText(Day day);
/// 0 Sunday to 6 Saturday.
int WeekdayOf(Day day);
/// Today by the machine's clock and time zone.
Day Today();

/// Minutes since midnight as HHMM.
std::string TimeText(int minutes);

/// The days from `first` to `last` on which the practice is open: no Sundays, no turn of the year. `today` is
/// open whatever it is, so that a sample always has a day to work with.
std::vector<Day> OpenDays(Day first, Day last, Day today);

/// The beginnings of a day's appointments in minutes since midnight, `slot` minutes apart; the afternoon ends
/// early on Saturdays.
std::vector<int> SlotsOf(Day day, int slot);

}  // namespace kova::sample
