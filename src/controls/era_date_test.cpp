#include "controls/era_date.h"

#include <gtest/gtest.h>

namespace {

using namespace kova::controls;
using kova::foundation::CivilDayOf;
using kova::foundation::DayNumber;

/// "昭和 64/1/7"; "- 0/0/0" for nothing.
std::string Text(const EraDate& date) {
  const std::string era = date.era < 0 ? "-" : std::string(kEras[static_cast<std::size_t>(date.era)].name);
  return era + " " + std::to_string(date.year) + "/" + std::to_string(date.month) + "/" +
         std::to_string(date.day);
}

TEST(EraDate, ShowsTheTablesEras) {
  const struct {
    WesternDate date;
    const char* shown;
  } cases[] = {
      {{1867, 12, 31}, "西暦 1867/12/31"},
      {{1868, 0, 0}, "明治 1/0/0"},
      {{1912, 7, 30}, "明治 45/7/30"},
      {{1912, 7, 31}, "大正 1/7/31"},
      {{1926, 12, 25}, "大正 15/12/25"},
      {{1926, 12, 26}, "昭和 1/12/26"},
      {{1989, 1, 7}, "昭和 64/1/7"},
      {{1989, 1, 8}, "平成 1/1/8"},
      {{2019, 4, 30}, "平成 31/4/30"},
      {{2019, 5, 1}, "令和 1/5/1"},
      {{2019, 0, 0}, "平成 31/0/0"},
      {{0, 5, 6}, "- 0/5/6"},
      {{-3, 1, 1}, "- -3/1/1"},
      {{2024, 13, 32}, "令和 6/13/32"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(Text(ToEra(each.date)), each.shown);
    EXPECT_EQ(ToWestern(ToEra(each.date)), each.date) << each.shown;
  }
  EXPECT_EQ(ToWestern({4, 40, 13, 32}), (WesternDate{2028, 13, 32}));
  EXPECT_EQ(ToWestern({kWestern, 2024, 4, 1}), (WesternDate{2024, 4, 1}));
  EXPECT_EQ(ToWestern({5, 2147483647, 1, 1}).year, 2147483647);
}

TEST(EraDate, EveryDayGoesThereAndBack) {
  int era = 1, weekday = 4;  // 1868-01-01 was a Wednesday
  for (int number = DayNumber({1868, 1, 1}); number <= DayNumber({2100, 12, 31}); ++number) {
    const WesternDate date = CivilDayOf(number);
    const EraDate shown = ToEra(date);
    ASSERT_EQ(ToWestern(shown), date) << Text(shown);
    ASSERT_TRUE(shown.era == era || shown.era == era + 1) << Text(shown);
    ASSERT_EQ(ReadDate(EraText(date)), shown) << EraText(date);
    ASSERT_EQ(NoteOf(shown, {}).front(), '(') << Text(shown);
    ASSERT_EQ(kova::foundation::WeekdayOf(date), weekday) << Text(shown);
    era = shown.era;
    weekday = weekday % 7 + 1;
  }
}

TEST(EraDate, ReadsWhatPeopleType) {
  const struct {
    const char* typed;
    const char* read;
  } cases[] = {
      {"S50.1.1", "昭和 50/1/1"},
      {"昭和50年1月1日", "昭和 50/1/1"},
      {"令和元年5月1日", "令和 1/5/1"},
      {"R6/4/1", "令和 6/4/1"},
      {"20240401", "令和 6/4/1"},
      {"2024-04-01", "令和 6/4/1"},
      {"Ｓ５０．１２．３１", "昭和 50/12/31"},
      {"平成３０年４月１日", "平成 30/4/1"},
      {"　h 30 4 1 ", "平成 30/4/1"},
      {"２０２４ー４ー１", "令和 6/4/1"},
      {"西暦2024年4月1日", "西暦 2024/4/1"},
      {"1850/1/2", "西暦 1850/1/2"},
      {"m45.7.30", "明治 45/7/30"},
      {"平成40.13.32", "平成 40/13/32"},
      {"s50", "昭和 50/0/0"},
      {"令和元年", "令和 1/0/0"},
      {"昭和 50年 1月 1日\r\n", "昭和 50/1/1"},
      {"大正・15・12・25", "?"},
      {"大正15・12・25", "大正 15/12/25"},
      // Not dates:
      {"", "?"},
      {"50", "?"},
      {"2024", "?"},
      {"元", "?"},
      {"50/1/1", "?"},
      {"元年5月1日", "?"},
      {"S", "?"},
      {"昭和", "?"},
      {"S50.1", "?"},
      {"S50.1.", "?"},
      {"S1975.1.1", "?"},
      {"S50.1.111", "?"},
      {"2024040", "?"},
      {"202404011", "?"},
      {"00000401", "?"},
      {"A50.1.1", "?"},
      {"S50.1.1x", "?"},
      {"S-5.1.1", "?"},
      {"\x8F", "?"},
  };
  for (const auto& each : cases) {
    const auto read = ReadDate(each.typed);
    EXPECT_EQ(read ? Text(*read) : "?", each.read) << each.typed;
  }
  const struct {
    const char* typed;
    int number;
  } numbers[] = {
      {"", 0}, {"12", 12}, {"１２", 12}, {"元", 1}, {"元年", 1}, {"x", 0}, {"99999999999", 2147483647}};
  for (const auto& each : numbers) EXPECT_EQ(NumberInField(each.typed), each.number) << each.typed;
}

TEST(EraDate, SaysTheWeekdayTheAgeAndWhatCannotBe) {
  const WesternDate today{2024, 2, 28};
  const struct {
    EraDate date;
    const char* note;
  } cases[] = {
      {{5, 6, 4, 1}, "(月)"},
      {{3, 50, 2, 28}, "(金) 49歳"},
      {{3, 50, 2, 29}, "暦にない日付"},
      {{3, 51, 2, 29}, "(日) 47歳"},
      {{5, 6, 2, 28}, "(水) 0歳"},
      {{5, 6, 13, 1}, "暦にない日付"},
      {{4, 40, 1, 1}, "元号の期間外"},
      {{3, 64, 1, 8}, "元号の期間外"},
      {{5, 1, 4, 30}, "元号の期間外"},
      {{kNoEra, 2000, 1, 1}, "(土) 24歳"},
      {{kWestern, 12345, 1, 1}, "暦にない日付"},
      {{5, 6, 0, 1}, ""},
  };
  for (const auto& each : cases) EXPECT_EQ(NoteOf(each.date, today), each.note) << Text(each.date);
  EXPECT_EQ(NoteOf({3, 50, 2, 28}, {}), "(金)");
}

TEST(EraDate, CountsOn) {
  EXPECT_EQ(CountedOn(DateField::kYear, 0, 1), 1);
  EXPECT_EQ(CountedOn(DateField::kYear, 1, -1), 1);
  EXPECT_EQ(CountedOn(DateField::kYear, 2147483647, 1), 2147483647);
  EXPECT_EQ(CountedOn(DateField::kMonth, 12, 1), 1);
  EXPECT_EQ(CountedOn(DateField::kMonth, 1, -1), 12);
  EXPECT_EQ(CountedOn(DateField::kDay, 0, -1), 31);
  EXPECT_EQ(CountedOn(DateField::kDay, 40, -1), 31);
}

}  // namespace
