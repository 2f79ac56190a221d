#include "charges/receipt_rates.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace kova::charges {
namespace {

using foundation::SettingsSnapshot;

TEST(ReceiptRates, TextAndNumberReadTheSamePeriodsDifferently) {
  const std::string open =
      "ReceptCount=2\r\nReceptFrm01=20000101\r\nReceptTo01=20180331\r\nReceptRate01=5\r\n"
      "ReceptFrm02=20180401\r\nReceptRate02=8\r\n";
  const std::string closed = open + "ReceptTo02=20201231\r\n";
  const std::string one = "ReceptCount=1\r\n";
  const struct {
    const std::string lines;
    const char* text;
    int number, percent;
    double rate;
  } rows[] = {
      {open, "19991231", DateNumber(1999, 12, 31), 8, 0.0},  // an open period contains what lies before it
      {open, "20100505", DateNumber(2010, 5, 5), 5, 0.05},
      {open, "20180331", DateNumber(2018, 3, 31), 5, 0.05},
      {open, "20180401", DateNumber(2018, 4, 1), 8, 0.0},  // as text a missing end comes before every date
      {open, "", DateNumber(-1, -1, -1), 8, 0.0},
      {closed, "20180401", 20180401, 8, 0.08},
      {closed, "20201231", 20201231, 8, 0.08},
      {closed, "20210101", 20210101, 0, 0.0},
      {closed, "", -10101, 0, 0.0},
      {"", "20200101", 20200101, 0, 0.0},
      {"ReceptCount=-1\r\n", "20200101", 20200101, 0, 0.0},
      {"ReceptCount=2147483647\r\n", "20200101", 20200101, 1, 0.0},  // nothing stored: open, 1 %
      {one + "ReceptTo01=20201231\r\n", "19000101", 19000101, 1, 0.0},
      {one + "ReceptTo01=20201231\r\n", "18991231", 18991231, 0, 0.0},  // the start's default as number
      {one + "ReceptTo01=\r\nReceptRate01=3\r\n", "20200101", 20200101, 0, 0.0},
      {one + "ReceptFrm01=2018/04/01\r\nReceptTo01=99991231\r\nReceptRate01=3\r\n", "18000101", 18000101, 3,
       0.0},
  };
  for (const auto& row : rows) {
    const SettingsSnapshot settings("[MENTE]\r\n" + row.lines);
    EXPECT_EQ(GetReceptPercent(settings, row.number), row.percent) << row.lines << row.number;
    EXPECT_DOUBLE_EQ(GetReceptRate(settings, row.text), row.rate) << row.lines << row.text;
  }
}

TEST(ReceiptRates, CmpRecept) {
  const auto compare = [](std::int32_t a, std::int32_t b) { return cmpRecept(&a, &b); };
  EXPECT_EQ(compare(1, 2), -1);
  EXPECT_EQ(compare(2, 1), 1);
  EXPECT_EQ(compare(5, 5), 1);
  EXPECT_EQ(compare(INT32_MIN, INT32_MAX), -1);
  EXPECT_EQ(compare(INT32_MAX, INT32_MIN), 1);
}

}  // namespace
}  // namespace kova::charges
