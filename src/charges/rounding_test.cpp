#include "charges/rounding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "charges/yen.h"

namespace kova::charges {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

TEST(Rounding, EveryMode) {
  const struct {
    double value;
    std::int32_t halfUp, up, down, towardZero;
  } rows[] = {
      {0.0, 0, 0, 0, 0},
      {-0.0, 0, 0, 0, 0},
      {2.49, 2, 3, 2, 2},
      {2.5, 3, 3, 2, 2},
      {100.0, 100, 100, 100, 100},
      {100.01, 100, 101, 100, 100},
      {100.99, 101, 101, 100, 100},
      {1080 * 0.08, 86, 87, 86, 86},
      // What the two-decimal text leaves of the third decimal; binary neighbours of a decimal half and exact
      // ties.
      {2.004, 2, 2, 2, 2},
      {2.996, 3, 3, 2, 2},
      {0.495, 0, 1, 0, 0},  // a little below: 0.49
      {2.495, 3, 3, 2, 2},  // a little above: 2.50
      {0.005, 0, 1, 0, 0},  // a little above: 0.01
      {1.005, 1, 1, 1, 1},  // a little below: 1.00
      {0.125, 0, 1, 0, 0},  // a tie, to the even 0.12
      {10.00390625, 10, 10, 10, 10},
      {0.9999996, 1, 1, 1, 0},  // 1.000000 with six decimals
      {0.9999994, 1, 1, 0, 0},
      {1e-300, 0, 0, 0, 0},
      // The sign of the integer part only: decimals count as positive.
      {-0.3, 0, 1, 0, 0},
      {-0.7, 1, 1, 0, 0},
      {-2.3, -2, -1, -2, -2},
      {-2.4, -2, -1, -2, -2},
      {-2.5, -1, -1, -2, -2},
      {-2.7, -1, -1, -2, -2},
      {-2.0, -2, -2, -2, -2},
      {-3.9, -2, -2, -3, -3},
      {-0.9999996, -1, -1, -1, 0},
      // Limits.
      {2147483646.5, INT32_MAX, INT32_MAX, 2147483646, 2147483646},
      {2147483647.0, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
      {2147483647.5, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
      {2147483648.0, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
      {-2147483648.0, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN},
      {-2147483648.5, INT32_MIN + 1, INT32_MIN + 1, INT32_MIN, INT32_MIN},
      {-2147483649.0, INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN},
      {1e15 + 0.75, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
      {std::numeric_limits<double>::max(), INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
      {std::numeric_limits<double>::lowest(), INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN},
      {kInfinity, 0, 0, 0, 0},
      {-kInfinity, 0, 0, 0, 0},
      {kNoNumber, 0, 0, 0, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(RoundOff(1, row.value), row.halfUp) << row.value;
    EXPECT_EQ(GetRoundOffLong(row.value), row.halfUp) << row.value;
    EXPECT_EQ(RoundOff(2, row.value), row.up) << row.value;
    EXPECT_EQ(RoundOff(3, row.value), row.down) << row.value;
    for (const std::int16_t other : {0, 4, 7, -1, 32767, -32768}) {
      EXPECT_EQ(RoundOff(other, row.value), row.towardZero) << row.value << " in mode " << other;
    }
  }
}

TEST(Yen, WrapsAround) {
  EXPECT_EQ(AddYen(INT32_MAX, 1), INT32_MIN);
  EXPECT_EQ(AddYen(INT32_MIN, -1), INT32_MAX);
  EXPECT_EQ(SubtractYen(INT32_MIN, 1), INT32_MAX);
  EXPECT_EQ(SubtractYen(0, INT32_MIN), INT32_MIN);
  EXPECT_EQ(MultiplyYen(65536, 65536), 0);
  EXPECT_EQ(MultiplyYen(INT32_MIN, -1), INT32_MIN);
  EXPECT_EQ(MultiplyYen(-123456789, 100), 539222988);
}

}  // namespace
}  // namespace kova::charges
