#include "foundation/civil_day.h"

namespace kova::foundation {
namespace {

// Counted from 0000-03-01, so that leap days come last in their year.
constexpr int kDayZero = 693899;  // of 1899-12-30
constexpr int kDaysOf400Years = 146097;

}  // namespace

int DayNumber(const CivilDay& day) {
  const int y = day.month <= 2 ? day.year - 1 : day.year;
  const int ofYear = (153 * (day.month + (day.month > 2 ? -3 : 9)) + 2) / 5 + day.day - 1;
  return y * 365 + y / 4 - y / 100 + y / 400 + ofYear - kDayZero;
}

CivilDay CivilDayOf(int dayNumber) {
  const int days = dayNumber + kDayZero;
  const int era = days / kDaysOf400Years;
  const int ofEra = days % kDaysOf400Years;
  const int yearOfEra = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
  const int ofYear = ofEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int shifted = (5 * ofYear + 2) / 153;  // months from March
  const int month = shifted < 10 ? shifted + 3 : shifted - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, ofYear - (153 * shifted + 2) / 5 + 1};
}

bool IsRealDay(const CivilDay& day) {
  const bool inRange =
      day.year >= 1 && day.year <= 9999 && day.month >= 1 && day.month <= 12 && day.day >= 1 && day.day <= 31;
  return inRange && CivilDayOf(DayNumber(day)) == day;
}

int WeekdayOf(const CivilDay& day) {
  if (!IsRealDay(day)) return 0;
  // Number 1 is a Sunday; numbers go down to about minus 700,000, which is a multiple of 7.
  return (DayNumber(day) + 700000 - 1) % 7 + 1;
}

}  // namespace kova::foundation
