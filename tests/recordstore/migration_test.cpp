// Moving a practice between database folders; where the environment names a server, to it and back.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/os/files.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "tests/recordstore/store_server.h"

namespace {

using kova::store::GetText;
using kova::store::PutText;
using kova::store::Result;
using kova::store::On;

constexpr int Code(Result result) { return static_cast<int>(result); }
constexpr int kPatients = 2500;

class Moving : public testing::Test {
 protected:
  void SetUp() override {
    Make(from_);
    kova::testing::PutOnServer(to_.Path(), kova::testing::NewDatabaseName());
    Make(to_);
    CKovaDBSys db;
    ASSERT_EQ(db.OpenDB(from_.Path().c_str()), 0);
    On<CPatientDB> patients(db);
    ASSERT_EQ(patients.BeginTran(), 0);
    for (int i = 0; i < kPatients; ++i) {
      patients.record = {};
      PutText(patients.record.patientCode, std::to_string(100000 - i));
      PutText(patients.record.name, "表'ソ\\能\"\n;-- ?{}");
      std::memcpy(patients.record.reading, "\x83\x5E\x83", 3);    // half a character
      std::memcpy(patients.record.guardianName, "a\0b\xFFrest", 8);  // left over behind the terminator
      patients.record.sexCode = static_cast<std::uint8_t>(i);
      ASSERT_EQ(patients.Insert(), 0);
    }
    ASSERT_EQ(patients.EndTran(), 0);
    On<CSaleDB> sales(db);
    On<CSaleItemDB> items(db);
    tagSALEITEM item{};
    item.unitPrice = -2147483647;
    CString number;
    for (int i = 0; i < 3; ++i) ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  }
  static void Make(const kova::os::testing::TemporaryFolder& folder) {
    std::string problem;
    ASSERT_EQ(KovaCreateDatabase(folder.Path().c_str(), &problem), 0) << problem;
  }
  /// Stops at the `steps`-th step; 0 never.
  static int Move(const std::string& from, const std::string& to, int steps = 0) {
    std::string problem;
    const int result = KovaMigrate(from.c_str(), to.c_str(),
                                   [&](const char*, const char*, long long) { return --steps != 0; }, problem);
    EXPECT_EQ(result == 0, problem.empty()) << result << ": " << problem;
    return result;
  }
  /// All patients in the order of a key that is the same for all: that of writing.
  static std::string Patients(const std::string& folder) {
    CKovaDBSys db;
    EXPECT_EQ(db.OpenDB(folder.c_str()), 0) << db.GetProblem();
    On<CPatientDB> patients(db);
    EXPECT_EQ(patients.SetKey(1), 0);
    std::string all;
    for (int r = patients.GetFIRST(); r == 0; r = patients.GetNEXT())
      all.append(reinterpret_cast<const char*>(&patients.record), sizeof patients.record);
    return all;
  }

  kova::os::testing::TemporaryFolder from_{"migration_from"}, to_{"migration_to"}, back_{"migration_back"};
};

TEST_F(Moving, EveryByteComesThereAndBack) {
  const std::string before = Patients(from_.Path());
  ASSERT_EQ(before.size(), kPatients * sizeof(tagPATIENTDB));
  ASSERT_EQ(Move(from_.Path(), to_.Path()), 0);
  EXPECT_EQ(Patients(to_.Path()), before);
  Make(back_);
  ASSERT_EQ(Move(to_.Path(), back_.Path()), 0);
  EXPECT_EQ(Patients(back_.Path()), before);
  EXPECT_EQ(Patients(from_.Path()), before);
  // The next sale's number goes on.
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(back_.Path().c_str()), 0);
  On<CSaleDB> sales(db);
  On<CSaleItemDB> items(db);
  tagSALEITEM item{};
  CString number;
  ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number.GetString(), "000000000004");
}

TEST_F(Moving, IsTakenUpAgainAndOpensForNobodyMeanwhile) {
  CKovaDBSys db;
  for (const int steps : {1, 2, 4}) {
    EXPECT_EQ(Move(from_.Path(), to_.Path(), steps), Code(Result::kBusy));
    EXPECT_EQ(db.OpenDB(to_.Path().c_str()), Code(Result::kNoDatabase));
    if (!kova::testing::OnServer()) continue;
    // Nor by another folder that names the same database.
    const kova::os::testing::TemporaryFolder other{"migration_other"};
    for (const char* file : {"kova.server", "INDEXCONTROL.BTR"})
      ASSERT_EQ(kova::os::RealFiles().Copy(to_.Path() + file, other.Path() + file), kova::os::FileOutcome::kOk);
    EXPECT_EQ(db.OpenDB(other.Path().c_str()), Code(Result::kNoDatabase));
    EXPECT_NE(db.GetProblem().find("not finished"), std::string::npos) << db.GetProblem();
  }
  Make(back_);
  EXPECT_EQ(Move(back_.Path(), to_.Path()), Code(Result::kDuplicate)) << "another source";
  EXPECT_EQ(Move(from_.Path(), to_.Path()), 0);
  EXPECT_EQ(Patients(to_.Path()), Patients(from_.Path()));
}

TEST_F(Moving, WhatWouldLoseSomethingIsRefused) {
  EXPECT_EQ(Move(to_.Path(), from_.Path()), Code(Result::kDuplicate)) << "a target with records";
  EXPECT_EQ(Move(from_.Path(), from_.Path()), Code(Result::kBadArgument));
  EXPECT_EQ(Move(from_.Path(), back_.Path()), Code(Result::kNoDatabase));
  // Somebody writes to the source in the middle.
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(from_.Path().c_str()), 0);
  On<CPatientDB> patients(db);
  std::string problem;
  const int result = KovaMigrate(
      from_.Path().c_str(), to_.Path().c_str(),
      [&](const char* what, const char*, long long) {
        if (std::string(what) == "comparing" && patients.GetFIRST() == 0) (void)patients.Update();
        return true;
      },
      problem);
  EXPECT_EQ(result, Code(Result::kChanged));
  EXPECT_EQ(Move(from_.Path(), to_.Path()), Code(Result::kChanged)) << "taken up again";
  EXPECT_EQ(db.OpenDB(to_.Path().c_str()), Code(Result::kNoDatabase));
}

}  // namespace
