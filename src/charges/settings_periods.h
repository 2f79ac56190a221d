#pragma once

// Numbered periods kept in the settings: keys ending in the period number, from 01, and a key that counts
// them.

#include <string>
#include <string_view>

#include "foundation/settings.h"

namespace kova::charges {

/// The section of the periods and of their rates.
inline constexpr std::string_view kPeriodSection = "MENTE";

/// The names that one kind of period has in the settings file; stored, do not change.
struct PeriodKeys {
  std::string_view count;
  std::string_view from;
  std::string_view to;
};

/// `name` followed by the period number in at least two digits: "TaxFrm", 3 gives "TaxFrm03".
std::string NumberedKey(std::string_view name, int number);

/// The number of the first period that contains `date`; 0 when none does. Both ends belong to the period.
/// Dates are compared as text, byte by byte; an absent end is the empty text, which comes before every date.
/// A senseless count does not take its time: the search ends at the ten-thousandth period without a last day.
int FirstPeriodContaining(const foundation::SettingsSnapshot& settings, const PeriodKeys& keys,
                          std::string_view date);

/// A whole percent of the settings as a fraction; 0.0 when the key is absent or holds no number.
double RateOfPeriod(const foundation::SettingsSnapshot& settings, std::string_view rateKey, int number);

}  // namespace kova::charges
