#include "charges/tax_periods.h"

#include <gtest/gtest.h>

namespace kova::charges {
namespace {

using foundation::SettingsSnapshot;

SettingsSnapshot Settings(const std::string& taxLines, const std::string& globalLines = "") {
  return SettingsSnapshot("[GLOBAL]\r\n" + globalLines + "[MENTE]\r\n" + taxLines);
}

const std::string kTwoPeriods =
    "TaxCount=2\r\nTaxFrm01=20140401\r\nTaxTo01=20190930\r\nTaxRate01=8\r\n"
    "TaxFrm02=20191001\r\nTaxTo02=99991231\r\nTaxRate02=10\r\nTaxRate202=8\r\n";

TEST(TaxPeriods, RateOfTheDatesPeriod) {
  const SettingsSnapshot settings = Settings(kTwoPeriods);
  const struct {
    const char* date;
    double normal, reduced;
  } rows[] = {
      {"20140331", 0.0, 0.0},   {"20140401", 0.08, 0.0},  {"20190930", 0.08, 0.0},
      {"20191001", 0.10, 0.08}, {"99991231", 0.10, 0.08}, {"999912311", 0.0, 0.0},
      {"", 0.0, 0.0},           {"2019100", 0.0, 0.0},  // as text it lies between the periods
      {"\x82\x50", 0.0, 0.0},                           // bytes above 0x7F come after the digits
  };
  for (const auto& row : rows) {
    EXPECT_DOUBLE_EQ(TaxRateOn(settings, row.date, "", RateKind::kNormal), row.normal) << row.date;
    EXPECT_DOUBLE_EQ(TaxRateOn(settings, row.date, "", RateKind::kReduced), row.reduced) << row.date;
    EXPECT_EQ(IsTaxReduced(settings, row.date), row.reduced > 0) << row.date;
  }
}

TEST(TaxPeriods, ContractDate) {
  const std::string oneThreshold = kTwoPeriods + "TaxCont02=20190401\r\n";
  // Period 3 lies over period 2; both have thresholds, and so has the first.
  const std::string three =
      "TaxCount=3\r\nTaxFrm01=1\r\nTaxTo01=2\r\nTaxRate01=3\r\nTaxCont01=0500\r\n"
      "TaxFrm02=2\r\nTaxTo02=3\r\nTaxRate02=5\r\nTaxRate202=4\r\nTaxCont02=1500\r\n"
      "TaxFrm03=3\r\nTaxTo03=9\r\nTaxRate03=8\r\nTaxRate203=6\r\nTaxCont03=2500\r\n";
  const struct {
    const std::string& periods;
    const char *use, *date, *contract;
    RateKind kind;
    double rate;
  } rows[] = {
      {oneThreshold, "", "20191015", "20190901", RateKind::kNormal, 0.10},
      {oneThreshold, "0", "20191015", "20190901", RateKind::kNormal, 0.10},
      {oneThreshold, "x", "20191015", "20190901", RateKind::kNormal, 0.10},
      {oneThreshold, "1", "20191015", "20190901", RateKind::kNormal, 0.08},
      {oneThreshold, "1", "20191015", "", RateKind::kNormal, 0.10},
      {oneThreshold, "1", "20191015", "20000101", RateKind::kNormal, 0.0},
      {oneThreshold, "2", "20191015", "20190331", RateKind::kNormal, 0.08},
      {oneThreshold, "2", "20191015", "20190401", RateKind::kNormal, 0.10},
      {oneThreshold, "2", "20191015", "", RateKind::kNormal, 0.10},
      {oneThreshold, "2", "20191015", "20190331", RateKind::kReduced, 0.0},
      {oneThreshold, "2", "20000101", "20191015", RateKind::kNormal,
       0.0},  // the contract date finds no period
      {oneThreshold, "-1", "20191015", "20190331", RateKind::kNormal, 0.08},
      {three, "2", "5", "2500", RateKind::kNormal, 0.08},
      {three, "2", "5", "2499", RateKind::kNormal, 0.05},
      {three, "2", "5", "2499", RateKind::kReduced, 0.04},
      {three, "2", "5", "1499", RateKind::kNormal, 0.03},
      {three, "2", "5", "0499", RateKind::kNormal, 0.08},  // none accepts: the date's own period
      {three, "2", "3", "0001", RateKind::kNormal, 0.05},  // the first of two that contain the date
  };
  for (const auto& row : rows) {
    const std::string use = *row.use == 0 ? "" : std::string("ConsumptionTaxCont2=") + row.use + "\r\n";
    EXPECT_DOUBLE_EQ(TaxRateOn(Settings(row.periods, use), row.date, row.contract, row.kind), row.rate)
        << row.use << ' ' << row.date << ' ' << row.contract;
  }
}

TEST(TaxPeriods, OddSettings) {
  const struct {
    const char *lines, *date;
    double rate;
  } rows[] = {
      {"", "20200101", 0.0},
      {"TaxFrm01=0\r\nTaxTo01=9\r\nTaxRate01=8\r\n", "5", 0.0},  // no count
      {"TaxCount=-5\r\nTaxFrm01=0\r\nTaxTo01=9\r\nTaxRate01=8\r\n", "5", 0.0},
      {"TaxCount=1\r\nTaxFrm01=0\r\nTaxTo01=9\r\n", "5", 0.0},
      {"TaxCount=1\r\nTaxFrm01=0\r\nTaxTo01=9\r\nTaxRate01=ten\r\n", "5", 0.0},
      {"TaxCount=1\r\nTaxFrm01=0\r\nTaxTo01=9\r\nTaxRate01=10%\r\n", "5", 0.10},
      {"TaxCount=1\r\nTaxTo01=9\r\nTaxRate01=10\r\n", "5", 0.10},  // no start
      {"TaxCount=1\r\nTaxFrm01=0\r\nTaxRate01=10\r\n", "5", 0.0},  // no end
      {"TaxCount=3\r\nTaxFrm01=1\r\nTaxTo01=2\r\nTaxRate01=3\r\nTaxRate02=5\r\n", "",
       0.05},  // no date, no period keys
      {"TaxCount=100\r\nTaxFrm100=0\r\nTaxTo100=9\r\nTaxRate100=7\r\n", "5", 0.07},
      {"TaxCount=1\r\nTaxFrm1=0\r\nTaxTo1=9\r\nTaxRate1=7\r\n", "5", 0.0},  // two digits at least
  };
  for (const auto& row : rows) {
    EXPECT_DOUBLE_EQ(TaxRateOn(Settings(row.lines), row.date, "", RateKind::kNormal), row.rate)
        << row.lines << row.date;
  }
}

TEST(TaxPeriods, ASenselessCountTakesNoTime) {
  // Two thousand million look-ups would run into the test run's time limit.
  const SettingsSnapshot settings =
      Settings(kTwoPeriods + "TaxFrm9000=0\r\nTaxTo9000=1\r\nTaxRate9000=2\r\n");
  const SettingsSnapshot huge("[MENTE]\r\nTaxCount=2147483647\r\n" +
                              kTwoPeriods.substr(kTwoPeriods.find("TaxFrm01")) +
                              "TaxFrm9000=0\r\nTaxTo9000=1\r\nTaxRate9000=2\r\n");
  EXPECT_DOUBLE_EQ(TaxRateOn(settings, "0", "", RateKind::kNormal), 0.0);
  EXPECT_DOUBLE_EQ(TaxRateOn(huge, "0", "", RateKind::kNormal), 0.02) << "a stored period counts, gap or not";
  EXPECT_DOUBLE_EQ(TaxRateOn(huge, "19000101", "", RateKind::kNormal), 0.0);
  EXPECT_DOUBLE_EQ(TaxRateOn(huge, "", "", RateKind::kNormal), 0.0);
}

}  // namespace
}  // namespace kova::charges
