#pragma once

// The consumption tax of one receipt, as a qualified invoice needs it: rounded once for each rate.

#include <cstdint>

#include "printing/receipt.h"

namespace kova::printing {

/// The self-paid amounts of one rate, before the discount.
struct RateAmounts {
  int percent = 0;
  std::int64_t onTop = 0;     // amounts that tax is put on top of
  std::int64_t onTopTax = 0;  // that tax, as it was charged
  std::int64_t included = 0;  // amounts that include theirs

  std::int64_t Total() const { return onTop + onTopTax + included; }
};

struct ReceiptAmounts {
  RateAmounts normal;
  RateAmounts reduced;
  std::int64_t notTaxed = 0;
  std::int64_t insured = 0;
  std::int64_t discount = 0;
};

/// Fills the receipt's amounts: total, its parts, the tax within and on top, and the totals of the rates.
///
/// The discount is borne by the self-paid amounts in proportion, those of each rate as a whole; what exceeds
/// them by the insured part. The tax in a rate's total is that total times rate / (100 + rate), rounded once
/// by `roundingMode` (charges::RoundOff); where tax was only put on top and there is no discount that is the
/// tax charged.
void SettleTax(const ReceiptAmounts& amounts, std::int16_t roundingMode, _TMPRECEIPT& receipt);

}  // namespace kova::printing
