#include "charges/contributions.h"

#include <gtest/gtest.h>

namespace kova::charges {
namespace {

tagCONTRIBUTION Charge(std::int32_t points, std::int32_t burdenPercent, std::int32_t publicAmount = 0,
                       std::int32_t addedAmount = 0, std::int8_t flatAmountFlag = 0) {
  return {points, burdenPercent, publicAmount, flatAmountFlag, addedAmount};
}

TEST(Contributions, PartialInEveryMode) {
  const struct {
    std::int32_t points, percent, added;
    std::int32_t halfUp, up, down, towardZero;
  } rows[] = {
      {1234, 30, 0, 3700, 3710, 3700, 3700},
      {1234, 30, -4000, -300, -290, -300, -300},
      {15, 10, 0, 20, 20, 10, 10},
      {14, 10, 0, 10, 20, 10, 10},
      {1, 9, 0, 0, 0, 0, 0},    // below one yen
      {11, 1, 0, 0, 10, 0, 0},  // 1 yen
      {0, 30, 500, 500, 500, 500, 500},
      {1000, 0, 0, 0, 0, 0, 0},
      // A negative charge (a correction): cut toward zero, then the quirk of the rounding.
      {-1234, 30, 0, -3700, -3690, -3700, -3700},
      {-15, 10, 0, 0, 0, -10, -10},
      // Beyond 32 bits points * percent wraps around, then times ten, then the addition.
      {71582789, 30, 0, -214748360, -214748350, -214748360, -214748360},
      {INT32_MAX, 1, 0, 214748360, 214748370, 214748360, 214748360},
      {INT32_MIN, 1, 0, -214748360, -214748350, -214748360, -214748360},
      {INT32_MIN, -1, 0, -214748360, -214748350, -214748360, -214748360},
      {65536, 65536, 7, 7, 7, 7, 7},
      {INT32_MAX, 1, INT32_MAX, -1932735289, -1932735279, -1932735289, -1932735289},
  };
  for (const auto& row : rows) {
    const tagCONTRIBUTION charge = Charge(row.points, row.percent, 0, row.added);
    EXPECT_EQ(CalcPartialContribution(charge, 1), row.halfUp) << row.points << " at " << row.percent;
    EXPECT_EQ(CalcPartialContribution(charge, 2), row.up) << row.points << " at " << row.percent;
    EXPECT_EQ(CalcPartialContribution(charge, 3), row.down) << row.points << " at " << row.percent;
    EXPECT_EQ(CalcPartialContribution(charge, 0), row.towardZero) << row.points << " at " << row.percent;
    EXPECT_EQ(CalcPartialContribution(charge, 0x10001), row.halfUp) << "the mode's low 16 bits";
  }
}

TEST(Contributions, PublicShareAndFlatAmounts) {
  const struct {
    tagCONTRIBUTION charge;
    std::int32_t contribution, net;
  } rows[] = {
      {Charge(1234, 30, 700), 3700, 3000},
      {Charge(1234, 30, 5000, 100), 3800, -1200},
      {Charge(1234, 30, 500, 100, 1), 500, 0},
      {Charge(1234, 30, 500, 0, 2), 3700, 3200},  // only 1 marks a flat amount
      {Charge(1234, 30, 500, 0, -1), 3700, 3200},
      {Charge(1234, 30, INT32_MIN), 3700, INT32_MIN + 3700},
      {Charge(-1234, 30, INT32_MAX), -3700, INT32_MAX - 3698},
  };
  for (const auto& row : rows) {
    const Contribution both = CalcContribution(row.charge, 1);
    EXPECT_EQ(both.contribution, row.contribution);
    EXPECT_EQ(both.net, row.net);
    EXPECT_EQ(CalcPublicContribution(row.charge, 1), row.net);
  }
  EXPECT_EQ(CalcPartialContribution(Charge(1234, 30, 500, 0, 1), 1), 3700) << "the flag plays no part here";
}

}  // namespace
}  // namespace kova::charges
