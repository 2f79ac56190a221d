#pragma once

// Whole-yen amounts: signed 32-bit numbers whose arithmetic wraps around, as the stored amounts always have.

#include <cstdint>

namespace kova::charges {

/// `a` + `b`, wrapping around at 32 bits.
[[nodiscard]] constexpr std::int32_t AddYen(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

/// `a` - `b`, wrapping around at 32 bits.
[[nodiscard]] constexpr std::int32_t SubtractYen(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// `a` * `b`, wrapping around at 32 bits.
[[nodiscard]] constexpr std::int32_t MultiplyYen(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

}  // namespace kova::charges
