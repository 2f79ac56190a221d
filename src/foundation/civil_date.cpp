#include "foundation/civil_date.h"

namespace kova::foundation {
namespace {

// Days are counted from 0000-03-01, so that leap days come last in their year.
constexpr int kDayZero = 719468;  // of 1970-01-01
constexpr int kDaysOf400Years = 146097;

}  // namespace

int DayNumber(int year, int month, int day) {
  const int y = month <= 2 ? year - 1 : year;
  const int ofYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return y * 365 + y / 4 - y / 100 + y / 400 + ofYear - kDayZero;
}

CivilDate DateOfDay(int dayNumber) {
  const int days = dayNumber + kDayZero;
  const int era = days / kDaysOf400Years;
  const int ofEra = days % kDaysOf400Years;
  const int yearOfEra = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
  const int ofYear = ofEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int shifted = (5 * ofYear + 2) / 153;  // months from March
  const int month = shifted < 10 ? shifted + 3 : shifted - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, ofYear - (153 * shifted + 2) / 5 + 1};
}

}  // namespace kova::foundation
