#include "postal/geo_import.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/text932/cp932.h"

namespace kova::postal {
namespace {

constexpr char kHead[] = "都道府県名,市区町村名,大字町丁目名,小字,緯度,経度\r\n";

std::string Entry(const std::string& code, const std::string& address) {
  return ",," + code + ",,,,\"" + address + "\",,,,,,,,\r\n";
}

TEST(GeoImport, PlacesEachCodeAsNearAsTheTableAllows) {
  const std::string table = std::string(kHead) +
                            "\"甲県\",\"乙市\",\"北幸一丁目\",,35.2,139.2\r\n"
                            "甲県,乙市,北幸二丁目,,35.4,139.4\r\n"
                            "甲県,乙市,十日市,,36.0,140.0\r\n"
                            "甲県,丙村,,,30,130\r\n";
  const std::string list = Entry("2000003", "甲県乙市表町") + Entry("2000001", "甲県乙市北幸") +
                           Entry("2000001", "甲県乙市ほか") + Entry("2000002", "甲県乙市十日市１番,２号") +
                           Entry("2000004", "甲県丙村") + Entry("9000000", "丁県戊市");
  // The same in either encoding.
  for (const std::string& each : {table, "\xEF\xBB\xBF" + text932::ToUtf8(table)}) {
    std::string made;
    const GeoOutcome outcome = MakeCoordinates(each, list, made);
    EXPECT_EQ(made,
              "2000001,甲県乙市北幸,35.300000,139.300000\r\n"
              "2000002,甲県乙市十日市１番，２号,36.000000,140.000000\r\n"
              "2000003,甲県乙市表町,35.533333,139.533333\r\n"
              "2000004,甲県丙村,30.000000,130.000000\r\n");
    EXPECT_EQ(outcome.towns, 2U);
    EXPECT_EQ(outcome.cities, 2U);
    EXPECT_EQ(outcome.nowhere, 1U);
    EXPECT_EQ(outcome.faultyLine, 0U);
  }
}

TEST(GeoImport, RefusesWhatIsNoTable) {
  const std::string row = "甲県,乙市,丙町,,35,139\n";
  const struct {
    std::string table;
    std::size_t line;
  } rows[] = {{"", 1},
              {"緯度,経度\n", 1},
              {kHead + row + "甲県,乙市,丙町,,35\n", 3},
              {kHead + row + row + "甲県,乙市,丙町,,nan,139\n", 4},
              {std::string(kHead) + "甲県,乙市,丙町,,91,139\n", 2},
              {std::string(kHead) + "甲県,乙市,丙町,,35,68,139\n", 0}};
  for (const auto& each : rows) {
    std::string made = "before";
    EXPECT_EQ(MakeCoordinates(each.table, Entry("2000001", "甲県"), made).faultyLine, each.line)
        << each.table;
    EXPECT_EQ(made == "before", each.line != 0);
  }
}

}  // namespace
}  // namespace kova::postal
