// How often a database server is asked by what a reception desk does all day: each time costs a way over the network.

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "pickers/master_choices.h"
#include "pickers/patient_query.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "tests/recordstore/store_server.h"
#include "visitflow/board.h"

namespace {

using kova::store::PutText;
using kova::store::On;

constexpr int kRows = 100;

class RoundTrips : public testing::Test {
 protected:
  void SetUp() override {
    kova::testing::PutOnServer(folder_.Path(), kova::testing::NewDatabaseName());
    std::string problem;
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str(), &problem), 0) << problem;
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
    On<CPatientDB> patients(db_);
    On<CReservationDB> reservations(db_);
    On<CCategoryDB> categories(db_);
    On<CDoctorDB> doctors(db_);
    ASSERT_EQ(patients.BeginTran(), 0);
    for (int i = 0; i < 2 * kRows; ++i) {
      const std::string code = std::to_string(1000 + i), day = i < kRows ? "20260101" : "20260102";
      PutText(patients.record.patientCode, code);
      PutText(patients.record.name, "患者" + code);
      const char* const readings[] = {"かんじゃ", "カンジャ", "ｶﾝｼﾞｬ"};
      PutText(patients.record.reading, readings[i % 3] + code);
      PutText(reservations.record.reservationNumber, code);
      PutText(reservations.record.patientCode, code);
      PutText(reservations.record.reservationDate, day);
      PutText(categories.record.classCode, i < kRows ? "1" : "2");
      PutText(categories.record.code, std::to_string(i % kRows));
      PutText(categories.record.sortOrder, std::to_string(i % kRows));
      ASSERT_EQ(patients.Insert(), 0);
      ASSERT_EQ(reservations.Insert(), 0);
      ASSERT_EQ(categories.Insert(), 0);
    }
    ASSERT_EQ(patients.EndTran(), 0);
  }
  std::uint64_t Asked(const std::function<void()>& operation) {
    const std::uint64_t before = db_.GetEngine()->RoundTrips();
    operation();
    return db_.GetEngine()->RoundTrips() - before;
  }

  kova::os::testing::TemporaryFolder folder_{"round_trips"};
  CKovaDBSys db_;
};

TEST_F(RoundTrips, OfTheBoard) {
  kova::visitflow::DayRead day;
  EXPECT_EQ(Asked([&] { day = kova::visitflow::ReadDay(&db_, "20260101"); }), 2u);
  ASSERT_EQ(day.rows.size(), static_cast<std::size_t>(kRows));
  EXPECT_EQ(day.rows[7].patientName, "患者1007");
  std::string stamp;
  EXPECT_EQ(Asked([&] { EXPECT_TRUE(kova::visitflow::ReadBoardStamp(&db_, stamp)); }), 1u);
}

TEST_F(RoundTrips, AViewEndsWithItsLastRead) {
  CKovaDBSys other;
  ASSERT_EQ(other.OpenDB(folder_.Path().c_str()), 0);
  On<CPatientDB> others(other);
  On<CPatientDB> patients(db_);
  const auto insert = [&](const char* code) {
    PutText(others.record.patientCode, code);
    return others.Insert();
  };
  const auto operation = [&] {
    CKovaReads reads(&db_);
    EXPECT_EQ(patients.GetFIRST(), 0);
    EXPECT_EQ(insert("8001"), 0);
    reads.EndWithNext();
    EXPECT_EQ(patients.GetLAST(), 0);
    EXPECT_STREQ(patients.record.patientCode, "1199") << "as it was at the first read";
  };
  EXPECT_EQ(Asked(operation), 2u);
  EXPECT_EQ(Asked([&] {
    CKovaReads reads(&db_);
    reads.EndWithNext();
    EXPECT_EQ(patients.GetLAST(), 0);
    EXPECT_STREQ(patients.record.patientCode, "8001");
    EXPECT_EQ(insert("8002"), 0);
    EXPECT_EQ(patients.GetLAST(), 0) << "once more all the same";
    EXPECT_STREQ(patients.record.patientCode, "8002");
  }), 3u);
}

TEST_F(RoundTrips, OfThePatientQuery) {
  using kova::pickers::SearchMode;
  std::vector<kova::pickers::PatientHit> hits;
  const auto query = [&](SearchMode mode, const char* text, bool withMaidenName) {
    return Asked([&] { hits = kova::pickers::QueryPatients(&db_, mode, text, withMaidenName); });
  };
  EXPECT_LE(query(SearchMode::kId, "１1", false), 3u);
  EXPECT_EQ(hits.size(), static_cast<std::size_t>(kRows)) << "1100 to 1199";
  EXPECT_LE(query(SearchMode::kKana, "かんじゃ", false), 3u);
  ASSERT_EQ(hits.size(), 2u * kRows) << "in three kana forms";
  EXPECT_EQ(hits.front().reading, "かんじゃ1000") << "in the order of the bytes";
  EXPECT_EQ(hits.back().reading, "ｶﾝｼﾞｬ1197");
  EXPECT_LE(query(SearchMode::kName, "患者11", true), 3u);
  EXPECT_EQ(hits.size(), static_cast<std::size_t>(kRows));
}

TEST_F(RoundTrips, OfTheFillers) {
  namespace pickers = kova::pickers;
  pickers::ChoiceList list;
  const auto fill = [&] { list = pickers::CategoryChoices(&db_, "1", {}); };
  EXPECT_EQ(Asked(fill), 3u);  // with the stamp that it is kept by
  EXPECT_EQ(list.entries.size(), static_cast<std::size_t>(kRows));
  EXPECT_EQ(Asked(fill), 1u);  // kept
  EXPECT_LE(Asked([&] { list = pickers::PaymentMethodChoices(&db_, {}); }), 3u);
  EXPECT_EQ(list.entries.size(), static_cast<std::size_t>(kRows));
  EXPECT_LE(Asked([&] { (void)pickers::DoctorChoices(&db_, {}); }), 3u);
  EXPECT_LE(Asked([&] { (void)pickers::StaffChoices(&db_, {}); }), 3u);
  EXPECT_LE(Asked([&] { (void)pickers::CreditCategoryChoices(&db_, {}, ""); }), 3u);
  EXPECT_LE(Asked([&] { (void)pickers::RecallGroupChoices(&db_, {}); }), 3u);
}

}  // namespace
