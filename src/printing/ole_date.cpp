#include "printing/ole_date.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "foundation/number_text.h"
#include "foundation/text_tools.h"

namespace kova::printing {
namespace {

constexpr std::int32_t kValid = 0;
constexpr std::int32_t kInvalid = 1;
constexpr int kFirstDay = -657434;  // 0100-01-01
constexpr int kLastDay = 2958465;   // 9999-12-31
constexpr double kSecondsOfDay = 86400.0;
// Days of a civil date are counted from 0000-03-01, so that leap days come last in their year.
constexpr int kDayZero = 693899;  // of 1899-12-30
constexpr int kDaysOf400Years = 146097;

int DayNumber(int year, int month, int day) {
  const int y = month <= 2 ? year - 1 : year;
  const int ofYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return y * 365 + y / 4 - y / 100 + y / 400 + ofYear - kDayZero;
}

DateParts CivilDate(int dayNumber) {
  const int days = dayNumber + kDayZero;
  const int era = days / kDaysOf400Years;
  const int ofEra = days % kDaysOf400Years;
  const int yearOfEra = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
  const int ofYear = ofEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int shifted = (5 * ofYear + 2) / 153;  // months from March
  const int month = shifted < 10 ? shifted + 3 : shifted - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, ofYear - (153 * shifted + 2) / 5 + 1};
}

}  // namespace

DateParts PartsOf(const _TMPRECEIPTDATE& date) {
  if (date.status != kValid || !std::isfinite(date.days) || date.days < kFirstDay ||
      date.days >= kLastDay + 1)
    return {};
  const double day = std::trunc(date.days);
  const bool nextDay = std::round(std::abs(date.days - day) * kSecondsOfDay) >= kSecondsOfDay;
  const int number = static_cast<int>(day) + (nextDay ? 1 : 0);
  return number > kLastDay ? DateParts{} : CivilDate(number);
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
  const int number = DayNumber(year, month, day);
  const DateParts parts = CivilDate(number);
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
