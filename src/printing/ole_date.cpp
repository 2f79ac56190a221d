#include "printing/ole_date.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "foundation/civil_date.h"
#include "foundation/number_text.h"
#include "foundation/text_tools.h"

namespace kova::printing {
namespace {

constexpr std::int32_t kValid = 0;
constexpr std::int32_t kInvalid = 1;
constexpr int kFirstDay = -657434;  // 0100-01-01
constexpr int kLastDay = 2958465;   // 9999-12-31
constexpr double kSecondsOfDay = 86400.0;
constexpr int k1970 = 25569;  // 1970-01-01

DateParts PartsOfDay(int number) {
  const foundation::CivilDate date = foundation::DateOfDay(number - k1970);
  return {date.year, date.month, date.day};
}

}  // namespace

DateParts PartsOf(const _TMPRECEIPTDATE& date) {
  if (date.status != kValid || !std::isfinite(date.days) || date.days < kFirstDay ||
      date.days >= kLastDay + 1)
    return {};
  const double day = std::trunc(date.days);
  const bool nextDay = std::round(std::abs(date.days - day) * kSecondsOfDay) >= kSecondsOfDay;
  const int number = static_cast<int>(day) + (nextDay ? 1 : 0);
  return number > kLastDay ? DateParts{} : PartsOfDay(number);
}

std::string DottedDate(const _TMPRECEIPTDATE& date) {
  const DateParts parts = PartsOf(date);
  if (parts.year < 0) return {};
  char text[48];
  std::snprintf(text, sizeof text, "%04d.%02d.%02d", parts.year, parts.month, parts.day);
  return text;
}

_TMPRECEIPTDATE DateOf(int year, int month, int day) {
  const bool inRange = year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= 31;
  if (!inRange) return {0, kInvalid};
  const int number = foundation::DayNumber(year, month, day) + k1970;
  const DateParts parts = PartsOfDay(number);
  if (parts.month != month || parts.day != day) return {0, kInvalid};
  return {static_cast<double>(number), kValid};
}

_TMPRECEIPTDATE DateOf(std::string_view date) {
  if (date.size() != 8 || !foundation::IsNumeric(date)) return {0, kInvalid};
  const int number = foundation::ReadInteger(date);
  return DateOf(number / 10000, number / 100 % 100, number % 100);
}

int WeekdayOf(std::string_view date) {
  const _TMPRECEIPTDATE day = DateOf(date);
  if (day.status != kValid) return 0;
  const int sinceSaturday = static_cast<int>(day.days) % 7;  // 1899-12-30 was a Saturday
  return (sinceSaturday + 6 + 7) % 7 + 1;
}

}  // namespace kova::printing
