#pragma once

// The lines of a receipt, unwrapped once for the decisions that print them.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/settings.h"
#include "printing/receipt.h"
#include "printing/receipt_settings.h"

namespace kova::printing {

enum class TaxClass { kNone, kOnTop, kIncluded };

/// Sums are in 64 bits: what is printed is the sum, also beyond the 32 bits of an amount.
struct ReceiptLine {
  std::string name;  // the one to print
  int category = 0;
  bool mayLead = false;  // may stand for the whole receipt
  bool isInsurance = false;
  bool isApplied = false;  // in yen, but of the insured part
  bool isReduced = false;
  TaxClass taxClass = TaxClass::kNone;
  std::int32_t quantity = 0;
  std::int32_t unitValue = 0;
  std::int64_t points = 0;  // of an insurance line
  std::int64_t amount = 0;
  std::string remark;

  bool IsSelfPaid() const { return !isInsurance && !isApplied; }
};

/// True when the line is taxed at the reduced rate: its category or item says so, and its date has such a
/// rate.
bool IsReducedRate(const foundation::SettingsSnapshot& settings, const _TMPSALEITEM& item);

/// Nothing when the receipt cannot be read: a negative count, no array, or a line that is not there.
std::optional<std::vector<ReceiptLine>> LinesOf(const _TMPRECEIPT& receipt,
                                                const foundation::SettingsSnapshot& settings,
                                                const ReceiptSettings& wanted);

}  // namespace kova::printing
