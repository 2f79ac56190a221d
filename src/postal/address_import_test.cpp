// The list made from what Japan Post publishes.

#include "postal/address_import.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/text932/cp932.h"
#include "postal/address_list.h"

namespace kova::postal {
namespace {

std::string Town(const std::string& code, const std::string& kana, const std::string& city,
                 const std::string& town) {
  return "01101,\"060  \",\"" + code + "\",\"ｹﾝ\",\"ｼ\",\"" + kana + "\",\"県\",\"" + city + "\",\"" + town +
         "\",1,0,0,0,0,0\r\n";
}

std::string Entry(const std::string& code, const std::string& kana, const std::string& address,
                  const std::string& city, const std::string& town) {
  return "01101,\"060  \",\"" + code + "\",\"ｹﾝ\",\"ｼ\",\"" + kana + "\",\"" + address + "\",\"" + city +
         "\",\"" + town + "\",1,0,0,0,0,0\r\n";
}

const std::string kOffice =
    "01101,\"(ｶﾌﾞ)ﾐﾅﾄ\",\"株式会社　みなと\",\"県\",\"港市\",\"表町\",\"６丁目１－２\",\"0608621\",\"060  "
    "\",\"港\",0,0,0\r\n";

std::string Imported(const std::string& source) {
  std::string list;
  return AppendAddresses(source, list).faultyLine == 0 ? list : "refused";
}

TEST(AddressImport, MakesAddressesOfTowns) {
  const struct {
    std::string city, town, address;
  } cases[] = {
      {"港市", "表町", "県港市表町"},
      {"港市", "以下に掲載がない場合", "県港市"},
      {"境町", "境町の次に番地がくる場合", "県境町"},
      {"琴平町", "琴平町の次に１～４２６番地がくる場合（川東）", "県琴平町"},
      {"大島郡利島村", "利島村一円", "県大島郡利島村"},
      {"多賀町", "一円", "県多賀町一円"},
      {"港市", "大通西（１～１９丁目）", "県港市大通西"},
      {"港市", "大江（１丁目（２）、３丁目「５」）北", "県港市大江北"},
      {"洋野町", "種市第１地割～第３地割（八木南町）", "県洋野町種市"},
      {"西和賀町", "穴明２２地割、穴明２３地割", "県西和賀町穴明"},
      {"西和賀町", "甲子５１地割", "県西和賀町甲子５１地割"},
  };
  for (const auto& each : cases)
    EXPECT_EQ(Imported(Town("0600000", "ﾏﾁ", each.city, each.town)),
              Entry("0600000", "ﾏﾁ", each.address, each.city, each.town));
}

TEST(AddressImport, JoinsTownsOfSeveralLines) {
  EXPECT_EQ(
      Imported(Town("0660005", "ｷｮｳﾜ(88-2､", "港市", "協和（８８－２、") +
               Town("0660005", "271-10､", "港市", "２７１－１０、") +
               Town("0660005", "343ﾊﾞﾝﾁ)", "港市", "３４３番地）") + Town("0660005", "ｵﾓﾃ", "港市", "表町")),
      Entry("0660005", "ｷｮｳﾜ(88-2､271-10､343ﾊﾞﾝﾁ)", "県港市協和", "港市",
            "協和（８８－２、２７１－１０、３４３番地）") +
          Entry("0660005", "ｵﾓﾃ", "県港市表町", "港市", "表町"));
  // A reading that is whole in each line is there once; a name that is never closed ends with its code.
  EXPECT_EQ(Imported(Town("6020001", "ﾏﾁ", "港市", "町（東、") + Town("6020001", "ﾏﾁ", "港市", "西") +
                     Town("6020002", "ｶﾜ", "港市", "川")),
            Entry("6020001", "ﾏﾁ", "県港市町", "港市", "町（東、西") +
                Entry("6020002", "ｶﾜ", "県港市川", "港市", "川"));
}

TEST(AddressImport, TakesBothEditionsAndOffices) {
  const std::string towns = Town("0600000", "ﾏﾁ", "港市", "表町");
  const std::string fullWidthKana = text932::ReplaceAll(towns, "ﾏﾁ", "マチ");
  EXPECT_EQ(Imported("\xEF\xBB\xBF" + text932::ToUtf8(fullWidthKana)), Imported(towns));
  const std::string list = Imported(towns + kOffice);
  // An office is found by its code, and no patient's address finds its code.
  EXPECT_EQ(FindEntries(list, {2, "0608621", 0x40}),
            std::vector<std::string>{"県　港市表町６丁目１－２　株式会社　みなと"});
  EXPECT_EQ(FindEntries(list, {6, "県港市表町６丁目１", 0x4, KeyUse::kLongestBeginning}),
            std::vector<std::string>{"0600000"});
  std::string fromUtf8;
  EXPECT_EQ(AppendAddresses("1,2,1234567,,,,\xF0\xA0\xAE\x9F,,,0,0,0,0,0,0", fromUtf8).unstorableLines, 1u);
}

TEST(AddressImport, RefusesWhatIsNoSuchList) {
  const std::string good = Town("0600000", "ﾏﾁ", "港市", "表町");
  const struct {
    std::string source;
    std::size_t line;
  } cases[] = {{good + "x", 2},
               {good + good.substr(0, good.size() - 6), 2},  // cut
               {"a,b,c\n", 1},
               {good + "\r\n" + text932::ReplaceAll(good, "0600000", "060000"), 3},
               {std::string(1000, ','), 1},
               {"\x95\"\n", 1}};
  for (const auto& each : cases) {
    std::string list = "as it was";
    EXPECT_EQ(AppendAddresses(each.source, list).faultyLine, each.line);
    EXPECT_EQ(list, "as it was");
  }
  std::string list;
  EXPECT_EQ(AppendAddresses("", list).entries, 0u);
}

TEST(AddressImport, TellsWhatChanged) {
  const auto line = [](const char* code, const char* address) { return Entry(code, "", address, "", ""); };
  const ListChanges changes = CompareLists(
      "Convert File Version\nFlags 68\n1000001,甲町\n1000002,乙町\n1000003,丙町\n",
      line("1000003", "丙町") + line("1000001", "甲町") + line("1000001", "表町") + line("1000004", "丁町"));
  EXPECT_EQ(changes.added, (std::vector<CodeChange>{{"1000004", "", "丁町"}}));
  EXPECT_EQ(changes.removed, (std::vector<CodeChange>{{"1000002", "乙町", ""}}));
  EXPECT_EQ(changes.renamed, (std::vector<CodeChange>{{"1000001", "甲町", "甲町、表町"}}));
}

}  // namespace
}  // namespace kova::postal
