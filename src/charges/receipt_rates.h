#pragma once

// The receipt rate, a percentage kept per period in the settings.

#include <string_view>

#include "foundation/settings.h"

namespace kova::charges {

/// The receipt rate of the first period that contains `date`, as a fraction; 0.0 when there is none.
///
/// @param date  eight digits YYYYMMDD, compared as text
[[nodiscard]] double GetReceptRate(const foundation::SettingsSnapshot& settings, std::string_view date);

/// A date as one number, the form GetReceptPercent takes. An invalid date has -1 for each part, so -10101.
[[nodiscard]] constexpr int DateNumber(int year, int month, int day) {
  return year * 10000 + month * 100 + day;
}

/// The receipt rate of the first period that contains `dateNumber`, in whole percent; 0 when there is none, 1
/// when the period has no rate key. Deliberate: a period that ends on 99991231, or has no key for its end, is
/// open and contains every date, those before its start too.
[[nodiscard]] int GetReceptPercent(const foundation::SettingsSnapshot& settings, int dateNumber);

/// Orders elements by the 32-bit number they begin with, for qsort: 1 when `a`'s is greater or equal, else
/// -1. Never 0 (deliberately: equal ones are reported as greater).
[[nodiscard]] int cmpRecept(const void* a, const void* b);

}  // namespace kova::charges
