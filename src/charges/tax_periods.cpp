#include "charges/tax_periods.h"

#include "charges/settings_periods.h"

namespace kova::charges {
namespace {

using foundation::SettingsSnapshot;

constexpr PeriodKeys kTaxPeriods = {"TaxCount", "TaxFrm", "TaxTo"};

// Stored as a number; any value but these asks for the transitional rule.
enum ContractDateUse { kIgnoreContractDate = 0, kLookContractDateUp = 1 };

double Rate(const SettingsSnapshot& settings, int period, RateKind kind) {
  return RateOfPeriod(settings, kind == RateKind::kReduced ? "TaxRate2" : "TaxRate", period);
}

// Of `period` and the ones before it, the last whose contract threshold the contract had reached; `period`
// itself when there is none. A period without a threshold takes every contract.
int PeriodOfContract(const SettingsSnapshot& settings, int period, std::string_view contractDate) {
  for (int earlier = period; earlier >= 1; --earlier) {
    const std::string threshold = settings.GetString(kPeriodSection, NumberedKey("TaxCont", earlier), "");
    if (threshold <= contractDate) return earlier;
  }
  return period;
}

}  // namespace

double TaxRateOn(const SettingsSnapshot& settings, std::string_view date, std::string_view contractDate,
                 RateKind kind) {
  // Without a contract date the answer does not depend on its use, which stands in a section of its own to
  // read.
  const int use =
      contractDate.empty() ? kIgnoreContractDate : settings.GetInt("GLOBAL", "ConsumptionTaxCont2", 0);
  const bool lookContractUp = use == kLookContractDateUp;
  const int period = FirstPeriodContaining(settings, kTaxPeriods, lookContractUp ? contractDate : date);
  if (period == 0) return 0.0;
  const bool transitional = use != kIgnoreContractDate && !lookContractUp;
  return Rate(settings, transitional ? PeriodOfContract(settings, period, contractDate) : period, kind);
}

bool IsTaxReduced(const SettingsSnapshot& settings, std::string_view date) {
  const int period = FirstPeriodContaining(settings, kTaxPeriods, date);
  return period != 0 && Rate(settings, period, RateKind::kReduced) > 0.0;
}

}  // namespace kova::charges
