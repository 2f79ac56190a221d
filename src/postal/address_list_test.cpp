// Searching the list, both lookups and the narrowing of their candidates.

#include "postal/address_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/os/testing/fake_files.h"
#include "postal/address_choice.h"
#include "postal/address_lookup.h"

namespace kova::postal {
namespace {

using os::testing::FakeFiles;
using os::testing::FakeStep;

const std::string kFile = "C:\\prog\\Address.csv";

/// A line as Japan Post writes them, with the whole address in column 6.
std::string Line(const std::string& code, const std::string& address) {
  return "13101,\"100  \",\"" + code + "\",\"ﾄｳｷｮｳﾄ\",\"ﾁﾖﾀﾞｸ\",\"ﾏﾁ\",\"" + address +
         "\",\"区\",\"町\",0,0,0,0,0,0\r\n";
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& each : texts) joined += (joined.empty() ? "" : " | ") + each;
  return joined;
}

std::string Shown(const Candidates& candidates) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < candidates.list.size(); ++i) texts.push_back(candidates.Answer(i));
  return Joined(texts);
}

TEST(AddressList, FindsFields) {
  const std::string half = "\x95";  // the first half of a character
  const struct {
    const char* what;
    std::string list;
    int column;
    std::string key;
    unsigned columns;
    std::string found;
  } cases[] = {
      {"a prefix", "a,b,123\na,b,1\nc,d,124", 2, "12", 0x7, "a,b,123 | c,d,124"},
      {"a quoted comma, doubled quotes", "\"x,\"\"y\"\"\",2,\"3\"\r\n", 2, "3", 0x5, "x,\"y\",3"},
      {"key in quotes", "a,\"b\"\"c\"\n", 1, "b\"c", 0x1, "a"},
      {"text behind the quotes", "\"a\"b,c\n", 0, "ab", 0x2, "c"},
      {"an unclosed quote", "\"a,b\nc,d\n", 0, "a,b", 0x1, "a,b"},
      {"three columns", "a,b,3\n", 2, "3", 0x7FFF, "a,b,3,,,,,,,,,,,,"},
      {"no such column", "a,b\n", 2, "3", 0x1, ""},
      {"empty lines and fields", "\n\r\n,,\n,,3\n", 2, "3", 0x4, "3"},
      {"a cut last line", "a,b,3\na,b,31,\"x", 2, "31", 0xC, "31,x"},
      {"half characters", half + ",b,3\n" + half + "\",b,3\n", 2, "3", 0x1, half + " | " + half + "\""},
      {"a key of half a character", "表,1\n" + half + ",2\n", 0, half, 0x2, "2"},
      {"a trail byte is no character", "能,1\n\\,2\n", 0, "\\", 0x2, "2"},
      {"a header", "\"Convert File Version 1\"\r\nFlags 68\r\n1234567,港町\r\n", 2, "12", 0x44,
       "1234567,港町"},
      {"a header in hexadecimal", "Convert File Version\nFlags 0x44\n1,港町\n", 6, "港", 0x46, ",1,港町"},
      {"a header, key column left out", "Convert File Version\nFlags 64\n1,港町\n", 2, "1", 0x40, ""},
      {"a header without flags", "Convert File Version\na,b,3\n", 2, "3", 0x3, "a,b"},
      {"flags without a number", "Convert File Version\nFlags x\na,b,3\n", 2, "3", 0x3, ""},
      {"flags beyond the columns", "Convert File Version\nFlags 4294934532\n3\n", 2, "3", 0x4, "3"},
      {"only a header", "Convert File Version", 2, "3", 0x4, ""},
      {"an empty list", "", 2, "3", 0x4, ""},
  };
  for (const auto& each : cases)
    EXPECT_EQ(Joined(FindEntries(each.list, {each.column, each.key, each.columns})), each.found) << each.what;
  const std::string wide = "a,b," + std::string(300, ',') + "\n";
  EXPECT_EQ(Joined(FindEntries(wide, {0, "a", 0x4002})), "b,");
}

TEST(AddressList, RejectsAndTellsAMissingList) {
  FakeFiles files;
  files.contents[kFile] = "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15\n";
  const struct {
    std::string file;
    AddressQuery query;
    SearchOutcome outcome;
  } cases[] = {
      {kFile, {14, "15", 0x7FFF}, SearchOutcome::kSearched},
      {"", {2, "3", 0x40}, SearchOutcome::kRejected},
      {kFile, {2, "", 0x40}, SearchOutcome::kRejected},
      {kFile, {15, "3", 0x40}, SearchOutcome::kRejected},
      {kFile, {-1, "3", 0x40}, SearchOutcome::kRejected},
      {kFile, {2, "3", 0}, SearchOutcome::kRejected},
      {kFile, {2, "3", 0x8000}, SearchOutcome::kRejected},
      {"C:\\no", {2, "3", 0x40}, SearchOutcome::kNoList},
  };
  std::vector<std::string> found;
  for (const auto& each : cases)
    EXPECT_EQ(SearchAddressFile(files, each.file, each.query, found), each.outcome)
        << each.file << each.query.columns;
  files.failing = FakeStep::kRead;
  EXPECT_EQ(AddressesOfCode(files, kFile, "3").SureAnswer(), "");
  EXPECT_EQ(CodesOfAddress(files, kFile, "7").SureAnswer(), "");
}

class Lookup : public testing::Test {
 protected:
  Lookup() {
    files_.contents[kFile] =
        Line("1000001", "東京都千代田区千代田") + Line("1000002", "東京都千代田区皇居外苑") +
        Line("1000002", "東京都千代田区皇居外苑") + Line("1000004", "東京都千代田区大手町") +
        Line("2240003", "神奈川県横浜市都筑区センター北") +
        Line("2240003", "神奈川県横浜市都筑区ガーデン１番館") + Line("2410814", "神奈川県横浜市旭区旭ケ丘") +
        Line("9200946", "石川県金沢市大桑町ａ") + Line("9200947", "石川県金沢市大桑町a") +
        Line("1740041", "東京都板橋区舟渡") + Line("1740041", "東京都板橋区舟渡（１）");
  }
  FakeFiles files_;
};

TEST_F(Lookup, AddressesOfACode) {
  const struct {
    std::string code, found;
  } cases[] = {
      {"1000001", "東京都千代田区千代田"},
      {"100-0001", "東京都千代田区千代田"},
      {"１００－０００１", "東京都千代田区千代田"},
      {"〒100‐０００1", "東京都千代田区千代田"},
      {"100ー0001", "東京都千代田区千代田"},
      {"100\xB0"
       "0001",
       "東京都千代田区千代田"},  // the half-width long-vowel mark
      {"100― 0001　", "東京都千代田区千代田"},
      {"1000002", "東京都千代田区皇居外苑"},  // there twice, given once
      {"100", "東京都千代田区千代田 | 東京都千代田区皇居外苑 | 東京都千代田区大手町"},
      {"1740041", "東京都板橋区舟渡 | 東京都板橋区舟渡（１）"},
      {"10000011", ""},
      {"999", ""},
      {"－-", ""},
      {"", ""},
  };
  for (const auto& each : cases)
    EXPECT_EQ(Shown(AddressesOfCode(files_, kFile, each.code)), each.found) << each.code;
}

TEST_F(Lookup, CodesOfAnAddress) {
  const struct {
    std::string address, found;
  } cases[] = {
      {"東京都千代田区千代田", "100-0001"},
      {"東京都 千代田区　千代田１－１皇居東御苑内", "100-0001"},
      {"東京都千代田区大表", "100-0004"},  // dropped by characters: 表 and 手 share no byte that counts
      {"東京都千代田区九段", "100-0001 | 100-0002 | 100-0004"},
      {"神奈川県横浜市旭区旭ヶ丘12-3", "241-0814"},
      {"神奈川県横浜市都筑区ｾﾝﾀｰ北1", "224-0003"},
      {"神奈川県横浜市都筑区センタ－北1", "224-0003"},
      {"神奈川県横浜市都筑区ｶﾞｰﾃﾞﾝ1番館", "224-0003"},
      {"石川県金沢市大桑町ａ2", "920-0946"},  // as typed goes before another writing
      {"石川県金沢市大桑町a2", "920-0947"},
      {"石川県金沢市大桑町A", "920-0946 | 920-0947"},
      {"東京都板橋区舟渡9", "174-0041 | 174-0041"},
      {std::string("東京都千代田区大手町") + '\x92', "100-0004"},  // cut in half behind the town
      {"沖縄県", ""},
      {"　 ", ""},
      {"", ""},
  };
  for (const auto& each : cases)
    EXPECT_EQ(Shown(CodesOfAddress(files_, kFile, each.address)), each.found) << each.address;
  // Two places with one code are still a choice.
  EXPECT_EQ(CodesOfAddress(files_, kFile, "東京都板橋区舟渡9").SureAnswer(), std::nullopt);
  EXPECT_EQ(CodesOfAddress(files_, kFile, "東京都千代田区").SureAnswer(), std::nullopt);
  files_.reads = 0;
  (void)CodesOfAddress(files_, kFile, "東京都千代田区千代田" + std::string(100, '1'));
  EXPECT_EQ(files_.reads, 1);
}

TEST_F(Lookup, OneLineOfAHundredMegabytes) {
  files_.contents[kFile] = std::string(std::size_t{100} << 20, '\"');
  EXPECT_EQ(Shown(AddressesOfCode(files_, kFile, "1000001")), "");
  EXPECT_EQ(Shown(CodesOfAddress(files_, kFile, "東京都")), "");
}

TEST_F(Lookup, TypingNarrowsTheCandidates) {
  AddressChoice choice(CodesOfAddress(files_, kFile, "東京都"));
  const struct {
    std::string typed;
    std::size_t count;
  } cases[] = {{"", 5},       {"　", 5},     {"千代田", 3}, {"千代田 大手", 1},
               {"100-00", 3}, {"１００", 3}, {"ち", 0},     {"手町", 1}};
  for (const auto& each : cases) {
    choice.Narrow(each.typed);
    EXPECT_EQ(choice.Count(), each.count) << each.typed;
  }
  EXPECT_EQ(choice.AnswerAt(0), "100-0004");
}

TEST(ListAge, CountsMonths) {
  const auto day = [](int year, int month, int dayOfMonth) {
    std::tm date{};
    date.tm_year = year - 1900;
    date.tm_mon = month - 1;
    date.tm_mday = dayOfMonth;
    return date;
  };
  EXPECT_EQ(ListAgeText(day(2026, 5, 31), day(2026, 6, 30)), "住所データ: 2026年5月31日（1か月以内）");
  EXPECT_EQ(ListAgeText(day(2026, 5, 31), day(2026, 11, 22)), "住所データ: 2026年5月31日（5か月前）");
  EXPECT_EQ(ListAgeText(day(2023, 12, 1), day(2026, 11, 22)), "住所データ: 2023年12月1日（2年前）");
  EXPECT_EQ(ListAgeText({}, day(2026, 11, 22)), "");
}

}  // namespace
}  // namespace kova::postal
