#pragma once

// What the record store's interface promises, whichever engine is behind it: what the contract tests have in common. They
// run on the embedded store and on the server that the environment names (store_server.h).

#include <gtest/gtest.h>

#include <string>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/testing/distant_engine.h"
#include "tests/recordstore/store_server.h"

namespace kova::testing {

using store::GetText;
using store::PutText;
using store::On;
using store::Result;

inline constexpr int Code(Result result) { return static_cast<int>(result); }

// The parameter: whether the store is taken for one on the other side of a network, which is read in other blocks.
class RecordStore : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    testing::PutOnServer(folder_.Path(), testing::NewDatabaseName());
    std::string problem;
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str(), &problem), 0) << problem;
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0) << db_.GetProblem();
    if (GetParam()) store::testing::PutFarAway(db_);
  }

  static void PutReservation(CKovaDBSys& db, const char* number, const char* date, const char* time) {
    On<CReservationDB> table(db);
    PutText(table.record.reservationNumber, number);
    PutText(table.record.reservationDate, date);
    PutText(table.record.startTime, time);
    ASSERT_EQ(table.Insert(), 0);
  }

  static void PutCategory(CKovaDBSys& db, const char* classCode, const char* code, const char* name) {
    On<CCategoryDB> table(db);
    PutText(table.record.classCode, classCode);
    PutText(table.record.code, code);
    PutText(table.record.sortOrder, code);
    PutText(table.record.name, name);
    ASSERT_EQ(table.Insert(), 0);
  }

  os::testing::TemporaryFolder folder_{"recordstore"};
  CKovaDBSys db_;
};

}  // namespace kova::testing
