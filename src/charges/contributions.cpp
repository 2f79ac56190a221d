#include "charges/contributions.h"

#include "charges/rounding.h"
#include "charges/yen.h"

namespace kova::charges {
namespace {

constexpr std::int8_t kFlatAmount = 1;

}  // namespace

std::int32_t CalcPartialContribution(const tagCONTRIBUTION& charge, int roundMode) {
  // points * 10 yen * percent / 100
  const std::int32_t share = MultiplyYen(charge.points, charge.burdenPercent) / 10;
  const std::int32_t tens = RoundOff(static_cast<std::int16_t>(roundMode), share / 10.0);
  return AddYen(MultiplyYen(tens, 10), charge.addedAmount);
}

std::int32_t CalcPublicContribution(const tagCONTRIBUTION& charge, int roundMode) {
  return CalcContribution(charge, roundMode).net;
}

Contribution CalcContribution(const tagCONTRIBUTION& charge, int roundMode) {
  if (charge.flatAmountFlag == kFlatAmount) return {charge.publicAmount, 0};
  const std::int32_t contribution = CalcPartialContribution(charge, roundMode);
  return {contribution, SubtractYen(contribution, charge.publicAmount)};
}

}  // namespace kova::charges
