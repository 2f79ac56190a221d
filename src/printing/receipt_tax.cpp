#include "printing/receipt_tax.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "charges/rounding.h"

namespace kova::printing {
namespace {

/// An amount as the receipt holds it; beyond 32 bits the nearest limit.
std::int32_t Narrow(std::int64_t amount) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(amount, Limits::min(), Limits::max()));
}

std::int64_t TaxWithin(std::int64_t total, int percent, std::int16_t roundingMode) {
  if (percent <= 0) return 0;
  return charges::RoundOff(roundingMode, static_cast<double>(total) * percent / (100 + percent));
}

/// What of `amount` falls to `share` of `whole`, to the nearest yen.
std::int64_t Portion(std::int64_t amount, std::int64_t share, std::int64_t whole) {
  return std::llround(static_cast<double>(amount) * static_cast<double>(share) / static_cast<double>(whole));
}

struct Shares {
  std::int64_t normal = 0;
  std::int64_t reduced = 0;
  std::int64_t notTaxed = 0;
};

Shares ShareDiscount(std::int64_t discount, std::int64_t normal, std::int64_t reduced,
                     std::int64_t notTaxed) {
  const std::int64_t whole = normal + reduced + notTaxed;
  const bool canShare = discount > 0 && normal >= 0 && reduced >= 0 && notTaxed >= 0 && whole > 0;
  if (!canShare) return {};
  const std::int64_t borne = std::min(discount, whole);
  Shares shares;
  shares.normal = Portion(borne, normal, whole);
  shares.reduced = std::min(borne - shares.normal, Portion(borne, reduced, whole));
  shares.notTaxed = borne - shares.normal - shares.reduced;
  // The yen that rounding left over cannot be borne by an amount that is not there.
  if (shares.notTaxed > notTaxed) {
    shares.reduced += shares.notTaxed - notTaxed;
    shares.notTaxed = notTaxed;
  }
  return shares;
}

struct Settled {
  std::int64_t total;
  std::int64_t tax;
};

Settled Settle(const RateAmounts& rate, std::int64_t share, std::int16_t roundingMode) {
  const bool asCharged = rate.included == 0 && share == 0;
  const std::int64_t total = rate.Total() - share;
  return {total, asCharged ? rate.onTopTax : TaxWithin(total, rate.percent, roundingMode)};
}

}  // namespace

void SettleTax(const ReceiptAmounts& amounts, std::int16_t roundingMode, _TMPRECEIPT& receipt) {
  const RateAmounts& normal = amounts.normal;
  const RateAmounts& reduced = amounts.reduced;
  const std::int64_t selfPaid = normal.Total() + reduced.Total() + amounts.notTaxed;
  const std::int64_t onTop = normal.onTopTax + reduced.onTopTax;
  const std::int64_t whole = Settle(normal, 0, roundingMode).tax + Settle(reduced, 0, roundingMode).tax;
  receipt.insured = Narrow(amounts.insured);
  receipt.selfPaid = Narrow(selfPaid);
  receipt.total = Narrow(amounts.insured + selfPaid);
  receipt.discount = Narrow(amounts.discount);
  receipt.taxExclusive = Narrow(onTop);
  receipt.taxInclusive = Narrow(whole - onTop);
  receipt.taxRate = normal.percent;
  receipt.reducedTaxRate = reduced.percent;

  const Shares shares = ShareDiscount(amounts.discount, normal.Total(), reduced.Total(), amounts.notTaxed);
  const Settled settledNormal = Settle(normal, shares.normal, roundingMode);
  const Settled settledReduced = Settle(reduced, shares.reduced, roundingMode);
  receipt.normalRateTotal = Narrow(settledNormal.total);
  receipt.normalRateTax = Narrow(settledNormal.tax);
  receipt.reducedRateTotal = Narrow(settledReduced.total);
  receipt.reducedRateTax = Narrow(settledReduced.tax);
  receipt.notTaxedTotal = Narrow(amounts.notTaxed - shares.notTaxed);
}

}  // namespace kova::printing
