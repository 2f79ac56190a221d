#pragma once

// Consumption tax: which rate is in force on a date.

#include <string_view>

#include "foundation/settings.h"

namespace kova::charges {

enum class RateKind { kNormal, kReduced };

/// The consumption-tax rate in force on `date`, as a fraction (0.08 is 8 %).
///
/// Looks `date` up in the practice's tax periods; the first period that contains it wins. A contract date
/// counts by the practice's setting: ignored, looked up in the place of `date`, or deciding by the
/// transitional rule whether an earlier period's rate is kept. Returns 0.0 when no period contains the date,
/// or when the period has no such rate.
///
/// @param date          in the form of the stored periods (YYYYMMDD), compared as text
/// @param contractDate  the same form, or empty for none
[[nodiscard]] double TaxRateOn(const foundation::SettingsSnapshot& settings, std::string_view date,
                               std::string_view contractDate, RateKind kind);

/// True when the period that contains `date` has a reduced rate above zero. Neither a contract date nor the
/// setting for one plays a part (deliberately unlike TaxRateOn).
[[nodiscard]] bool IsTaxReduced(const foundation::SettingsSnapshot& settings, std::string_view date);

}  // namespace kova::charges
