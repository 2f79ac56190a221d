#include "foundation/text_tools.h"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/number_text.h"
#include "foundation/string_table.h"

namespace kova::foundation {
namespace {

TEST(TextTools, IsNumeric) {
  for (const char* yes : {"", "0", "0123456789"}) EXPECT_TRUE(IsNumeric(yes)) << yes;
  for (const char* no : {"12a", "１２", "-1", " 1", "1.0", "1\n", "\xB2", "\x82\x4F"})
    EXPECT_FALSE(IsNumeric(no)) << no;
}

TEST(TextTools, NumbersFromTexts) {
  const struct {
    const char* text;
    std::int32_t read, amount;
  } rows[] = {
      {"", 0, 0},
      {"1,234,567", 1, 1234567},
      {"-1,000", -1, -1000},
      {",,-,1,0,", 0, -10},
      {" \t\r\n\v\f+12abc", 12, 12},
      {"- 5", 0, 0},
      {"--5", 0, 0},
      {"+-5", 0, 0},
      {"0x10", 0, 0},
      {"１２", 0, 0},
      {"　12", 0, 0},
      {"2147483647", 2147483647, 2147483647},
      {"-2147483648", INT32_MIN, INT32_MIN},
      {"2,147,483,648", 2, INT32_MAX},
      {"-2147483649", INT32_MIN, INT32_MIN},
      {"99999999999999999999999999", INT32_MAX, INT32_MAX},
      {"-99999999999999999999999999", INT32_MIN, INT32_MIN},
      {"00000000000000000000000007", 7, 7},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ReadInteger(row.text), row.read) << row.text;
    EXPECT_EQ(Str2Long(row.text), row.amount) << row.text;
  }
}

TEST(TextTools, GetTimeSpan) {
  const struct {
    std::int16_t later, earlier, span;
  } rows[] = {
      {1030, 945, 45},
      {1100, 1000, 100},
      {1015, 1015, 0},
      {1000, 945, 15},
      {1200, 1130, 30},
      {1130, 1045, 45},
      {2359, 0, 2359},
      {945, 1030, -85},
      {1000, 1100, -100},
      {1099, 1000, 139},
      {-130, 0, -170},
      // Past 16 bits the result wraps around.
      {32767, 0, -32729},
      {-32768, 0, 32728},
      {32767, -32768, 79},
      {-32768, 32767, -39},
  };
  for (const auto& row : rows)
    EXPECT_EQ(GetTimeSpan(row.later, row.earlier), row.span) << row.later << " - " << row.earlier;
}

TEST(TextTools, Names) {
  EXPECT_EQ(GetDayOfWeekString(1), "日");
  EXPECT_EQ(GetDayOfWeekString(7), "土");
  for (const int none : {0, 8, -1, INT32_MAX, INT32_MIN}) EXPECT_EQ(GetDayOfWeekString(none), "") << none;
  EXPECT_EQ(GetPrivilegeName(1), "管理者");
  EXPECT_EQ(GetPrivilegeName(0), "ユーザー");
  EXPECT_EQ(GetPrivilegeName(2), "不明");
  EXPECT_EQ(GetPrivilegeName(-1), "不明");
  for (const int none : {0, 8031, 8035, -8032}) EXPECT_EQ(StringTableText(none), "") << none;
}

TEST(TextTools, FindOrAppendAnswersTheFirstEqualElement) {
  std::vector<std::string> list = {"A", "B", "B", "\x95\x5C"};
  const auto cmpAdd = [&](std::string_view text) {
    return FindOrAppend(
        text, list.size(), [&](std::size_t i) { return list[i]; }, [&] { list.emplace_back(text); });
  };
  EXPECT_EQ(cmpAdd("B"), 1);
  EXPECT_EQ(cmpAdd("\x95\x5C"), 3);
  EXPECT_EQ(list.size(), 4u);
  EXPECT_EQ(cmpAdd("b"), -1);
  EXPECT_EQ(cmpAdd(""), -1);
  EXPECT_EQ(list, (std::vector<std::string>{"A", "B", "B", "\x95\x5C", "b", ""}));
}

}  // namespace
}  // namespace kova::foundation
