#include "hosts/sample_practice/calendar.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace kova::sample {
namespace {

bool IsLeap(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysOfMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month - 1] + (month == 2 && IsLeap(year) ? 1 : 0);
}

Day FirstOfYear(int year) {
  const int before = year - 1;
  return (year - 1970) * 365 + (before / 4 - before / 100 + before / 400) -
         (1969 / 4 - 1969 / 100 + 1969 / 400);
}

}  // namespace

Day DayOf(std::string_view date) {
  if (date.size() != 8 || date.find_first_not_of("0123456789") != std::string_view::npos) return -1;
  const int number = std::stoi(std::string(date));
  const int year = number / 10000;
  const int month = number / 100 % 100;
  const int day = number % 100;
  if (year < 1970 || year > 9998 || month < 1 || month > 12 || day < 1 || day > DaysOfMonth(year, month))
    return -1;
  Day result = FirstOfYear(year) + day - 1;
  for (int each = 1; each < month; ++each) result += DaysOfMonth(year, each);
  return result;
}

std::string DateText(Day day) {
  int year = day < 0 ? 1969 + day / 365 : 1970 + day / 366;  // at most the right one
  while (FirstOfYear(year + 1) <= day) ++year;
  int rest = day - FirstOfYear(year);
  int month = 1;
  for (; rest >= DaysOfMonth(year, month); ++month) rest -= DaysOfMonth(year, month);
  return std::to_string(year * 10000 + month * 100 + rest + 1);
}

int WeekdayOf(Day day) { return (day + 4) % 7; }

Day Today() {
  const std::time_t now = std::time(nullptr);
  const std::tm local = *std::localtime(&now);
  char text[16];
  std::strftime(text, sizeof text, "%Y%m%d", &local);
  return DayOf(text);
}

std::string TimeText(int minutes) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d%02d", minutes / 60 % 24, minutes % 60);
  return text;
}

std::vector<Day> OpenDays(Day first, Day last, Day today) {
  std::vector<Day> days;
  for (Day day = first; day <= last; ++day) {
    const std::string monthDay = DateText(day).substr(4);
    const bool turnOfYear = monthDay >= "1230" || monthDay <= "0103";
    if (day == today || (WeekdayOf(day) != 0 && !turnOfYear)) days.push_back(day);
  }
  return days;
}

std::vector<int> SlotsOf(Day day, int slot) {
  constexpr int kMorning = 9 * 60;
  constexpr int kNoon = 12 * 60 + 30;
  constexpr int kAfternoon = 14 * 60;
  const int evening = WeekdayOf(day) == 6 ? 17 * 60 : 18 * 60 + 30;
  std::vector<int> slots;
  for (int at = kMorning; at + slot <= kNoon; at += slot) slots.push_back(at);
  for (int at = kAfternoon; at + slot <= evening; at += slot) slots.push_back(at);
  return slots;
}

}  // namespace kova::sample
