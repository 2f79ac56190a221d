#include "charges/rounding.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "foundation/number_text.h"

namespace kova::charges {
namespace {

using foundation::ReadInteger;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

// A value written with a fixed number of decimals; not through printf, whose digits differ between runtimes.
class FixedText {
 public:
  FixedText(double value, int decimals) {
    const auto end =
        std::to_chars(text_, text_ + sizeof text_, value, std::chars_format::fixed, decimals).ptr;
    length_ = static_cast<std::size_t>(end - text_);
  }

  // The number before the point. "-0" is 0: the sign is lost, and a decimal added later counts as positive.
  std::int32_t IntegerPart() const { return ReadInteger(Text()); }
  std::int32_t LastTwoDigits() const { return ReadInteger(Text().substr(length_ - 2)); }

 private:
  std::string_view Text() const { return {text_, length_}; }

  char text_[330];  // the largest double has 309 digits, then sign, point and six decimals
  std::size_t length_;
};

// The two-decimal rules: one more than the integer part when the two decimals are `leastToAddOne` or above.
std::int32_t RoundByTwoDecimals(double value, std::int32_t leastToAddOne) {
  const FixedText text(value, 2);
  const std::int32_t whole = text.IntegerPart();
  return text.LastTwoDigits() >= leastToAddOne && whole < kMost ? whole + 1 : whole;
}

std::int32_t TowardZero(double value) {
  if (value >= kMost) return kMost;
  if (value <= kLeast) return kLeast;
  return static_cast<std::int32_t>(value);
}

}  // namespace

std::int32_t RoundOff(std::int16_t mode, double value) {
  if (!std::isfinite(value)) return 0;
  switch (mode) {
    case 1:
      return RoundByTwoDecimals(value, 50);
    case 2:
      return RoundByTwoDecimals(value, 1);
    case 3:
      return FixedText(value, 6).IntegerPart();
    default:
      return TowardZero(value);
  }
}

std::int32_t GetRoundOffLong(double value) { return RoundOff(1, value); }

}  // namespace kova::charges
