#include "pickers/patient_query.h"

#include <gtest/gtest.h>

#include <tuple>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/table.h"

namespace kova::pickers {
namespace {

using store::PutText;
using store::On;

// A patient as "code name reading maidenName"; "-" for an empty text.
struct Row {
  const char *code, *name, *reading, *maidenName;
  int sexCode = 2, neverListed = 0;
};

class PatientQuery : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str()), 0);
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
    On<CPatientDB> table(db_);
    for (const Row& row :
         {Row{"A001", "表　一郎", "ｵﾓﾃ ｲﾁﾛｳ", "", 1}, Row{"A002", "表　花子", "おもて　はなこ", "青木"},
          Row{"A003", "青山　実", "オモテ　タロウ", "表", 1}, Row{"A004", "渡辺　恵", "ﾜﾀﾅﾍﾞ ﾒｸﾞﾐ", "表"},
          Row{"A005", "表　消", "ｵﾓﾃ ｷｴ", "", 1, 1}, Row{"B", "?", "?", ""}}) {
      table.record = {};
      PutText(table.record.patientCode, row.code);
      PutText(table.record.name, row.name);
      PutText(table.record.reading, row.reading);
      PutText(table.record.maidenName, row.maidenName);
      table.record.sexCode = static_cast<std::uint8_t>(row.sexCode);
      table.record.neverListed = static_cast<std::uint8_t>(row.neverListed);
      ASSERT_EQ(table.Insert(), 0);
    }
  }
  static std::string Codes(const std::vector<PatientHit>& hits) {
    std::string codes;
    for (const PatientHit& hit : hits) codes += hit.patientCode + " ";
    return codes;
  }
  std::string Find(const char* mode, std::string_view text, bool withMaidenName = false) {
    return Codes(QueryPatients(&db_, SearchModeOf(mode), text, withMaidenName));
  }

  os::testing::TemporaryFolder folder_{"query"};
  CKovaDBSys db_;
};

TEST_F(PatientQuery, FindsByTheBeginning) {
  const std::tuple<const char*, std::string, bool, const char*> cases[] = {
      {"BYID", "", false, "A001 A002 A003 A004 B "},
      {"BYID", "A", false, "A001 A002 A003 A004 "},
      {"BYID", "Ａ００２", false, "A002 "},
      {"BYID", "A00100000000000000000000000000000000000000000000", false, ""},
      {"BYKANA", "", false, "B A002 A003 A001 A004 "},
      {"BYKANA", "おもて", false, "A002 A003 A001 "},  // one walk for each form, in the order of the key
      {"BYKANA", "ｵﾓﾃ ﾊ", false, "A002 "},
      {"BYKANA", "ワタナベ　めぐみ", false, "A004 "},
      {"BYKANA", "ヶ", false, ""},  // has no other form; not a question mark
      {"BYKANA", "?", false, "B "},
      {"BYNAME", "表", false, "A001 A002 "},
      {"BYNAME", "表", true, "A001 A002 "},  // 渡辺 sorts before 表, and so does 青山
      {"BYNAME", "青", false, "A003 "},
      {"BYNAME", "青", true, "A003 A002 "},
      {"BYNAME", "", true, "B A003 A004 A001 A002 "},
      {"BYname", "", false, ""},
  };
  for (const auto& [mode, text, withMaidenName, codes] : cases)
    EXPECT_EQ(Find(mode, text, withMaidenName), codes) << mode << " " << text << withMaidenName;
  db_.CloseDB();
  EXPECT_EQ(Find("BYID", ""), "");
  EXPECT_TRUE(QueryPatients(nullptr, SearchMode::kId, "", false).empty());
}

TEST_F(PatientQuery, ShowsAndSortsHits) {
  std::vector<PatientHit> hits = QueryPatients(&db_, SearchMode::kName, "青", true);
  EXPECT_EQ(hits, (std::vector<PatientHit>{{"A003", "オモテ　タロウ", "青山　実（表）", true},
                                           {"A002", "おもて　はなこ", "表　花子（青木）", false}}));
  hits = QueryPatients(&db_, SearchMode::kId, "A", false);
  EXPECT_EQ(hits[1].name, "表　花子");
  const std::tuple<HitColumn, bool, const char*> cases[] = {
      {HitColumn::kSex, false, "A002 A004 A001 A003 "},
      {HitColumn::kSex, true, "A001 A003 A002 A004 "},
      {HitColumn::kReading, false, "A002 A003 A001 A004 "},
      {HitColumn::kId, true, "A004 A003 A002 A001 "},
  };
  for (const auto& [column, descending, codes] : cases) {
    SortHits(hits, column, descending);
    EXPECT_EQ(Codes(hits), codes) << static_cast<int>(column) << descending;
  }
}

}  // namespace
}  // namespace kova::pickers
