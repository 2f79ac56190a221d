#include "pickers/master_choices.h"

#include <gtest/gtest.h>

#include <functional>

#include "pickers/name_files.h"
#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"

namespace kova::pickers {
namespace {

using store::GetText;
using store::PutText;

// A list as "text{data}|text{data}|", "*" before the selected entry; zeros of the data as "." and runs of ten
// blanks as "~", so that a padded name stays readable.
std::string Show(const ChoiceList& list) {
  std::string shown;
  for (std::size_t i = 0; i < list.entries.size(); ++i) {
    const Choice& each = list.entries[i];
    if (static_cast<int>(i) == list.selected) shown += "*";
    shown += text932::ReplaceAll(each.text, std::string(10, ' '), "~");
    shown += "{" + text932::ReplaceAll(each.data, std::string_view("\0", 1), ".") + "}|";
  }
  return shown;
}

class MasterChoices : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str()), 0);
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
    ASSERT_EQ(other_.OpenDB(folder_.Path().c_str()), 0);
  }
  /// `group` is the class, table, category or kind of a table that has such.
  template <typename Table>
  void Put(const char* group, const char* code, const char* name, const char* sortOrder = "",
           const char* marker = "") {
    Table table(nullptr, 0);
    auto& record = table.record;
    ASSERT_EQ(table.SetAssociatedDB(&other_), 0);
    PutText(record.code, code);
    PutText(record.name, name);
    PutText(record.sortOrder, sortOrder);
    PutText(record.marker, marker);
    if constexpr (requires { record.classCode; }) PutText(record.classCode, group);
    if constexpr (requires { record.tableId; }) PutText(record.tableId, group);
    if constexpr (requires { record.categoryCode; }) PutText(record.categoryCode, group);
    if constexpr (requires { record.kind; }) PutText(record.kind, group), PutText(record.hospital, "表医院");
    ASSERT_EQ(table.Insert(), 0);
  }

  os::testing::TemporaryFolder folder_{"choices"};
  CKovaDBSys db_;
  CKovaDBSys other_;  // another workstation's
};

TEST_F(MasterChoices, CategoriesOfAClass) {
  Put<CCategoryDB>("0", "99", "前の組");
  Put<CCategoryDB>("1", "02", "表", "20");
  Put<CCategoryDB>("1", "03", "二", "10");
  Put<CCategoryDB>("1", "01", "旧", "30", "__");
  Put<CCategoryDB>("1", "04", "_旧", "40", "_");
  Put<CCategoryDB>("2", "01", "次の組");
  Put<CCategoryDB>("2", "02", "旧", "", "__x");
  const std::string all = "二{1.03.}|表{1.02.}|_旧{1.04.}|";
  const std::tuple<const char*, const char*, bool, std::string> cases[] = {
      {"1", "", false, all},
      {"1", "02", true, "{.....}|二{1.03.}|*表{1.02.}|_旧{1.04.}|"},
      {"1", "01", false, "二{1.03.}|表{1.02.}|*旧{1.01.}|_旧{1.04.}|"},
      {"1", "0", true, "{.....}|" + all},  // unknown: nothing is selected, the blank entry neither
      {"2", "02", false, "次の組{2.01.}|*旧{2.02.}|"},
      {"9", "", true, "{.....}|"},
  };
  for (const int useCache : {0, 1}) {
    db_.useCache = useCache;
    for (const auto& [classCode, current, addBlank, shown] : cases) {
      const ChoiceList list = CategoryChoices(&db_, classCode, {current, addBlank});
      EXPECT_EQ(Show(list), shown) << classCode << current << useCache;
      EXPECT_EQ(list.result, 0);
    }
  }
  EXPECT_EQ(Show(PaymentMethodChoices(&db_, {"02", true})), "{}|次の組~~~~~~~~~     01{}|");
  EXPECT_EQ(PaymentMethodChoices(&db_, {"01", true}).selected, 1);
  db_.CloseDB();
  for (CKovaDBSys* closed : {&db_, static_cast<CKovaDBSys*>(nullptr)}) {
    const ChoiceList list = CategoryChoices(closed, "1", {"02", true});
    EXPECT_EQ(Show(list), "{.....}|");
    EXPECT_NE(list.result, 0);
  }
}

TEST_F(MasterChoices, EachTableHasItsTexts) {
  Put<CDoctorDB>("", "01", "表　修一", "20");
  Put<CDoctorDB>("", "02", "乙", "10", "__");
  Put<CCustomTblDB>("A9", "0001", "前");
  Put<CCustomTblDB>("AA", "0001", "佐藤");
  Put<CCustomTblDB>("AA", "0002", "退職", "", "__");
  Put<CCustomTblDB>("AB", "0007", "赤");
  Put<CCustomTblDB>("AB", "0008", "旧", "", "__");
  Put<CCreditCategoryDB>("", "02", "物販", "1");
  Put<CCreditCategoryDB>("", "1", "保険", "2", "__");
  Put<CCreditCategoryDB>("", "03", "旧", "3", "__");
  Put<CCreditItemDB>("02", "001", "歯ブラシ");
  Put<CCreditItemDB>("02", "002", "旧", "", "__");
  Put<CCreditItemDB>("03", "001", "旧区分の品");
  Put<CConditionDB>("", "01", "良");
  Put<CRecallGroupDB>("", "01", "三か月");
  CCustomTblDB table(nullptr, 0);
  const std::string brush = "歯ブラシ~~~~~~~~~    02001{02.001.}|";
  const std::tuple<ChoiceList, std::string> cases[] = {
      {DoctorChoices(&db_, {"01", true}), "{...}|*表　修一{01.}|"},
      {DoctorChoices(&db_, {"02", false}), "*乙{02.}|表　修一{01.}|"},
      {StaffChoices(&db_, {"0002", false}), "佐藤{0001.}|"},
      {CreditCategoryChoices(&db_, {"02", true}, "1"), "{...}|*02物販{02.}| 1保険{1..}|"},
      {CreditCategoryChoices(&db_, {"03", false}, ""), "02物販{02.}|*03旧{03.}|"},
      {CreditItemChoices(&db_, "02", "001"), "*" + brush},
      {CreditItemChoices(&db_, "03", ""), "旧区分の品~~~~~~~~~  03001{03.001.}|"},
      {CreditDataChoices(&db_, "02", "009"), brush},
      {CreditDataChoices(&db_, "03", "001"), brush + "*旧区分の品~~~~~~~~~  03001{03.001.}|"},
      {ConditionChoices(&db_, {"01", false}), "*01良{01.}|"},
      {RecallGroupChoices(&db_, {"1", false}), "三か月{01.}|"},
      {MaterialItemCategoryChoices(&db_, {"0000", false}), "*その他{0000.}|"},
      {MaterialItemCategoryChoices(&db_, {"", false}), "その他{0000.}|"},
      {FreeTableChoices(&db_, table, "AB", {"7", true}), "{.....}|*0007赤{0007.}|"},
      {FreeTableChoices(&db_, table, "AB", {"08", false}), "0007赤{0007.}|*0008旧{0008.}|"},
      {FreeTableChoices(&db_, table, "AB", {"", false}), "0007赤{0007.}|"},
  };
  for (const auto& [list, shown] : cases) {
    EXPECT_EQ(Show(list), shown);
    EXPECT_EQ(list.result, 0);
  }
}

TEST_F(MasterChoices, IntroducingDoctorsWithTheirRecords) {
  Put<CIntroDrDB>("0", "001", "甲");
  Put<CIntroDrDB>("0", "002", "旧", "", "__");
  Put<CIntroDrDB>("1", "7", "丙");
  const std::string first = "甲~         表医院{001.}|", retired = "旧~         表医院{002.}|";
  const std::tuple<int, const char*, std::string, std::string> cases[] = {
      {0, "", first, "001 "},
      {0, "002", first + "*" + retired, "001 002 "},
      {1, "7", "*丙~         表医院{7...}|", "7 "},
      {2, "", "", ""},
      {255, "001", "*001" + first + "  7丙~         表医院{7...}|", "001 7 "},
  };
  for (const auto& [kind, current, shown, codes] : cases) {
    const IntroDoctorChoices choices =
        IntroducingDoctorChoices(&db_, static_cast<std::uint8_t>(kind), {current, false});
    EXPECT_EQ(Show(choices.list), shown) << kind;
    std::string records;
    for (const tagINTRODR& doctor : choices.doctors) records += std::string(GetText(doctor.code)) + " ";
    EXPECT_EQ(records, codes) << kind;
  }
}

TEST_F(MasterChoices, CachesAreUsedUntilTheTableChanges) {
  using Inserts = void (MasterChoices::*)(const char*, const char*, const char*, const char*, const char*);
  const struct {
    const char* kept;
    const char* group;
    Inserts put;
    std::function<ChoiceList(const Wanted&)> list;
  } cases[] = {
      {"pickers.category.3", "3", &MasterChoices::Put<CCategoryDB>,
       [&](auto wanted) { return CategoryChoices(&db_, "3", wanted); }},
      {"pickers.doctor", "", &MasterChoices::Put<CDoctorDB>,
       [&](auto wanted) { return DoctorChoices(&db_, wanted); }},
      {"pickers.creditcategory", "", &MasterChoices::Put<CCreditCategoryDB>,
       [&](auto wanted) { return CreditCategoryChoices(&db_, wanted, ""); }},
      {"pickers.condition", "", &MasterChoices::Put<CConditionDB>,
       [&](auto wanted) { return ConditionChoices(&db_, wanted); }},
      {"pickers.introdr.0", "0", &MasterChoices::Put<CIntroDrDB>,
       [&](auto wanted) { return IntroducingDoctorChoices(&db_, 0, wanted).list; }},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.kept);
    const auto put = [&](const char* code, const char* marker) {
      (this->*each.put)(each.group, code, "x", "", marker);
    };
    put("01", "");
    EXPECT_EQ(each.list({}).entries.size(), 1u);
    put("02", "__");
    EXPECT_EQ(each.list({}).entries.size(), 1u);
    const CKovaKept* kept = db_.GetKept(each.kept);
    EXPECT_NE(kept, nullptr);
    EXPECT_EQ(each.list({"02"}).selected, 1);
    EXPECT_EQ(db_.GetKept(each.kept), kept);  // no record was read: that would have put another in its place
    put("03", "");
    EXPECT_EQ(each.list({}).entries.size(), 2u);
    db_.useCache = 0;
    put("04", "");
    EXPECT_EQ(each.list({}).entries.size(), 3u);
    db_.useCache = 1;
  }
}

TEST(NameFiles, OneNameALine) {
  os::testing::FakeFiles files;
  files.contents["D:\\表\\freetblname.dat"] = "血液型\r\n\r\n表\n";
  EXPECT_EQ(ReadNameFile(files, "D:\\表\\", kFreeTableNames),
            (std::vector<NumberedName>{{"血液型", 0}, {"表", 2}}));
  EXPECT_EQ(ListText({"表", 2}), "表 2");
  EXPECT_TRUE(ReadNameFile(files, "D:\\表\\", kFreeDateNames).empty());
  EXPECT_TRUE(ReadNameFile(files, "", kFreeTableNames).empty());
}

}  // namespace
}  // namespace kova::pickers
