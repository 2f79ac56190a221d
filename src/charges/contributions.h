#pragma once

// What the patient pays of an insurance-covered charge.

#include <cstddef>
#include <cstdint>

namespace kova::charges {

/// The charge record as host applications hand it over by an untyped pointer. Its layout is shared with them;
/// do not change: natural alignment, little endian, 20 bytes (offsets 0, 4, 8, 12 and 16; bytes 13 to 15 are
/// not read).
struct tagCONTRIBUTION {
  std::int32_t points;         ///< insurance points of the charge; a point is 10 yen
  std::int32_t burdenPercent;  ///< the patient's share in whole percent
  std::int32_t publicAmount;   ///< yen borne elsewhere; of a flat-amount charge, the contribution itself
  std::int8_t flatAmountFlag;  ///< 1 for a flat-amount charge
  std::int32_t addedAmount;    ///< yen added after rounding
};
static_assert(sizeof(tagCONTRIBUTION) == 20 && offsetof(tagCONTRIBUTION, flatAmountFlag) == 12 &&
              offsetof(tagCONTRIBUTION, addedAmount) == 16);

/// Amounts in yen. All of them are computed in 32 bits and wrap around beyond.
struct Contribution {
  std::int32_t contribution;  ///< the patient's contribution
  std::int32_t net;           ///< that less the amount borne elsewhere; 0 for a flat-amount charge
};

/// The patient's contribution before the public share is taken off, in yen: the share rounded to whole tens
/// of yen, plus the added amount. A flat-amount charge is computed like any other.
///
/// @param roundMode  a mode of RoundOff; its low 16 bits count
[[nodiscard]] std::int32_t CalcPartialContribution(const tagCONTRIBUTION& charge, int roundMode);

/// The contribution less the amount borne elsewhere, in yen; 0 for a flat-amount charge.
[[nodiscard]] std::int32_t CalcPublicContribution(const tagCONTRIBUTION& charge, int roundMode);

/// Both at once; the contribution of a flat-amount charge is its publicAmount.
[[nodiscard]] Contribution CalcContribution(const tagCONTRIBUTION& charge, int roundMode);

}  // namespace kova::charges
