#pragma once

// Amounts of money to whole yen, by the rounding mode that the practice chose.

#include <cstdint>

namespace kova::charges {

/// `value` in whole yen by `mode`: 1 rounds half up (GetRoundOffLong), 2 rounds up, 3 rounds down, any other
/// number converts toward zero.
///
/// Modes 1 and 2 look at the first two decimals only, as the value's decimal text with two decimals shows
/// them; that text is the exact binary value rounded to nearest, ties to even, the same on every machine.
/// Mode 3 looks at the text with six decimals, so 0.9999996 gives 1. Deliberate: modes 1 and 2 add one to the
/// integer part of negative amounts too (-2.7 gives -1). Beyond 32 bits the result is the nearest limit; no
/// number and the infinities give 0.
///
/// @param mode  the number stored in settings; do not change the meanings
[[nodiscard]] std::int32_t RoundOff(std::int16_t mode, double value);

/// `value` in whole yen, half up on its first two decimals: RoundOff in mode 1.
[[nodiscard]] std::int32_t GetRoundOffLong(double value);

}  // namespace kova::charges
