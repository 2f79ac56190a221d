// What the record store promises of writing: bytes, keys, transactions, change times.

#include <cstring>
#include <ctime>
#include <vector>

#include "platform/os/program.h"
#include "platform/recordstore/journal.h"
#include "tests/recordstore/record_store_contract.h"

namespace kova::testing {
namespace {

TEST_P(RecordStore, BytesComeBackAsTheyWentIn) {
  On<CPatientDB> table(db_);
  tagPATIENTDB written{};
  PutText(written.patientCode, "0000000001");
  PutText(written.name, "髙橋 ソ表能予");
  std::memcpy(written.reading, "\x83\x5E\x83", 3);                // a character cut in half
  std::memcpy(written.otherName, "\xED\x40\xEE\xEF\x87\x90", 6);  // characters that the code page holds twice
  std::memcpy(written.guardianName, "a\0b\xFFrest", 8);           // left over behind the terminator
  std::memset(written.address, 'a', sizeof written.address);      // no terminator
  written.sexCode = 255;
  table.record = written;
  ASSERT_EQ(table.Insert(), 0);
  table.record = {};
  ASSERT_EQ(table.GetPatient1Data("0000000001"), 0);
  EXPECT_EQ(std::memcmp(&table.record, &written, sizeof written), 0);

  // What lies behind a terminator is no part of a key.
  table.SetKey(1);
  table.SetKeyBuffer(written.name, 4);  // 髙橋
  EXPECT_EQ(table.GetEQ(), 0);
}

TEST_P(RecordStore, PrimaryKeyIsUniqueAndRebuiltFromTheBuffer) {
  PutCategory(db_, "1", "10", "診察台");
  On<CCategoryDB> table(db_);
  PutText(table.record.classCode, "1");
  PutText(table.record.code, "10");
  EXPECT_EQ(table.Insert(), Code(Result::kDuplicate));
  ASSERT_EQ(table.GetPrimeKeyFromBuffer(), 0);
  ASSERT_EQ(table.GetEQ(), 0);
  EXPECT_STREQ(table.record.name, "診察台");
  EXPECT_EQ(table.GetCategoryData("1", "100"), Code(Result::kNotFound)) << "a longer code is not cut";
  EXPECT_EQ(table.SetKey(7), Code(Result::kNoSuchKey));
}

TEST_P(RecordStore, UsesThatMakeNoSenseGetAnAnswer) {
  CCategoryDB unbound(nullptr, 0);
  EXPECT_EQ(unbound.GetFIRST(), Code(Result::kNotOpen));
  EXPECT_EQ(unbound.Insert(), Code(Result::kNotOpen));
  EXPECT_EQ(unbound.BeginTran(), Code(Result::kNotOpen));
  EXPECT_EQ(unbound.SetAssociatedDB(nullptr), Code(Result::kNotOpen));
  EXPECT_EQ(unbound.GetCategoryData(nullptr, nullptr), Code(Result::kBadArgument));

  On<CCategoryDB> table(db_);
  EXPECT_EQ(table.GetNEXT(), Code(Result::kNoRecord));
  EXPECT_EQ(table.Update(), Code(Result::kNoRecord));
  EXPECT_EQ(table.Delete(), Code(Result::kNoRecord));
  EXPECT_EQ(table.EndTran(), Code(Result::kNoTransaction));
  EXPECT_EQ(table.GetFIRST(), Code(Result::kEndOfTable));
  EXPECT_TRUE(table.IsEOF());
  db_.CloseDB();
  EXPECT_EQ(table.GetFIRST(), Code(Result::kNotOpen)) << "the connection is gone, the object is not";
  ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
  EXPECT_EQ(table.GetFIRST(), Code(Result::kNotOpen))
      << "an object belongs to the connection it was bound to";
  EXPECT_EQ(table.Open(), 0);
  {
    CKovaDBSys shorter;
    ASSERT_EQ(shorter.OpenDB(folder_.Path().c_str()), 0);
    ASSERT_EQ(table.SetAssociatedDB(&shorter), 0);
  }
  EXPECT_EQ(table.GetFIRST(), Code(Result::kNotOpen)) << "the connection is destroyed";
  EXPECT_EQ(table.Open(), Code(Result::kNotOpen));
}

// What a record was is entered with what overwrites or deletes it, and can be made again.
TEST_P(RecordStore, JournalsKnowWhatRecordsWere) {
  On<CPatientDB> table(db_), other(db_);
  tagPATIENTDB first{};
  PutText(first.patientCode, "P1");
  PutText(first.name, "髙橋 ソ表");
  std::memcpy(first.otherName, "\xED\x40\xEE\xEF\x87\x90", 6);  // characters that the code page holds twice
  first.sexCode = 7;
  table.record = first;
  ASSERT_EQ(table.Insert(), 0);
  PutText(other.record.patientCode, "P2");
  ASSERT_EQ(other.Insert(), 0);
  const auto history = [&] {
    std::vector<store::JournalEntry> entries;
    EXPECT_EQ(store::ReadHistory(db_, store::TableId::Patient, reinterpret_cast<const char*>(&first), entries), 0);
    return entries;
  };
  // Each name that it had, with what was done to it: what was not kept is no entry.
  const auto told = [&] {
    std::string text;
    for (const store::JournalEntry& entry : history())
      text += std::string(GetText(reinterpret_cast<const tagPATIENTDB&>(*entry.record.data()).name)) +
              (entry.isDeleted ? " deleted " : " overwritten ");
    return text;
  };
  const auto rename = [&](const char* name, bool conditional = false) {
    PutText(table.record.name, name);
    return conditional ? table.UpdateIfUnchanged() : table.Update();
  };
  ASSERT_EQ(rename("second", true), 0);
  ASSERT_EQ(rename("third"), 0);
  ASSERT_EQ(table.BeginTran(), 0);
  ASSERT_EQ(rename("aborted"), 0);
  ASSERT_EQ(table.AbortTran(), 0);
  ASSERT_EQ(table.GetPatient1Data("P1"), 0);
  ASSERT_EQ(other.GetPatient1Data("P1"), 0);
  ASSERT_EQ(rename("fourth"), 0);
  ASSERT_EQ(other.BeginTran(), 0);
  EXPECT_EQ(other.UpdateIfUnchanged(), Code(Result::kChanged));
  ASSERT_EQ(other.GetPatient1Data("P2"), 0);
  PutText(other.record.patientCode, "P1");
  EXPECT_EQ(other.Update(), Code(Result::kDuplicate));
  ASSERT_EQ(other.EndTran(), 0);
  ASSERT_EQ(table.Delete(), 0);
  EXPECT_EQ(told(), "髙橋 ソ表 overwritten second overwritten third overwritten fourth deleted ");
  const store::JournalEntry entry = history().at(0);
  EXPECT_EQ(std::memcmp(entry.record.data(), &first, sizeof first), 0) << "every byte";
  EXPECT_EQ(entry.workstation, os::WorkstationName());
  EXPECT_NEAR(static_cast<double>(entry.time), static_cast<double>(std::time(nullptr)), 600);

  const auto bringBack = [&](std::size_t at) {
    return store::BringBack(db_, store::TableId::Patient, history().at(at).number);
  };
  EXPECT_EQ(store::BringBack(db_, store::TableId::Patient, 999), Code(Result::kNotFound));
  EXPECT_EQ(bringBack(0), 0);
  ASSERT_EQ(table.GetPatient1Data("P1"), 0);
  EXPECT_EQ(std::memcmp(&table.record, &first, sizeof first), 0);
  EXPECT_EQ(bringBack(1), Code(Result::kDuplicate)) << "that one was deleted: this is another";
  ASSERT_EQ(rename("fifth"), 0);
  EXPECT_EQ(bringBack(4), 0);
  ASSERT_EQ(table.GetPatient1Data("P1"), 0);
  EXPECT_STREQ(table.record.name, first.name);
  EXPECT_EQ(told(), "髙橋 ソ表 overwritten second overwritten third overwritten fourth deleted 髙橋 ソ表 overwritten fifth overwritten ");
}

TEST_P(RecordStore, TransactionsKeepAllOrNothing) {
  PutReservation(db_, "1", "20260101", "0900");
  On<CReservationDB> table(db_);
  On<CCategoryDB> other(db_);

  ASSERT_EQ(table.BeginTran(), 0);
  EXPECT_EQ(other.BeginTran(), Code(Result::kInTransaction)) << "the transaction is the connection's";
  ASSERT_EQ(table.GetReservationData("1"), 0);
  table.record.visited = 1;
  ASSERT_EQ(table.Update(UPDATE_ALWAYS), 0);
  PutCategory(db_, "5", "02", "診療中");
  EXPECT_EQ(other.GetCategoryData("5", "02"), 0) << "its own writes are seen inside";
  PutCategory(db_, "5", "03", "会計待ち");
  ASSERT_EQ(other.AbortTran(), 0);
  EXPECT_EQ(other.GetCategoryData("5", "02"), Code(Result::kNotFound));
  ASSERT_EQ(table.GetReservationData("1"), 0);
  EXPECT_EQ(table.record.visited, 0);

  ASSERT_EQ(table.BeginTran(), 0);
  PutCategory(db_, "5", "02", "診療中");
  db_.CloseDB();
  ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
  ASSERT_EQ(other.Open(), 0);
  EXPECT_EQ(other.GetCategoryData("5", "02"), Code(Result::kNotFound)) << "closing takes an open one back";
}

TEST_P(RecordStore, TheChangeTimeChangesWithEveryChange) {
  On<CCategoryDB> table(db_);
  std::vector<long long> stamps = {table.GetFileTime().GetTime()};
  for (const char* code : {"01", "02", "03"}) {
    PutCategory(db_, "5", code, "x");
    stamps.push_back(table.GetFileTime().GetTime());
  }
  ASSERT_EQ(table.GetFIRST(), 0);
  ASSERT_EQ(table.Update(), 0);
  stamps.push_back(table.GetFileTime().GetTime());
  ASSERT_EQ(table.Delete(), 0);
  stamps.push_back(table.GetFileTime().GetTime());
  // What was seen of an open transaction is never taken for what stands later, also when it was taken back.
  CKovaDBSys other;
  ASSERT_EQ(other.OpenDB(folder_.Path().c_str()), 0);
  for (const bool kept : {true, false}) {
    ASSERT_EQ(table.BeginTran(), 0);
    for (const char* code : {"07", "08", "09"}) {
      PutCategory(db_, kept ? "6" : "7", code, "x");
      stamps.push_back(table.GetFileTime().GetTime());
    }
    ASSERT_EQ(kept ? table.EndTran() : table.AbortTran(), 0);
    EXPECT_GE(table.GetFileTime().GetTime(), stamps.back());
    PutCategory(other, "8", kept ? "01" : "02", "x");
    stamps.push_back(table.GetFileTime().GetTime());
  }
  for (std::size_t i = 1; i < stamps.size(); ++i) EXPECT_GT(stamps[i], stamps[i - 1]) << i;

  const long long last = table.GetFileTime().GetTime();
  ASSERT_EQ(table.BeginTran(), 0);
  PutCategory(db_, "5", "09", "x");
  ASSERT_EQ(table.AbortTran(), 0);
  PutReservation(db_, "1", "20260101", "0900");
  EXPECT_EQ(table.GetFileTime().GetTime(), last) << "a change that nobody saw, another table's change";

  long long before = 0, after = 0;
  const auto both = {kova::store::TableId::Reservation, kova::store::TableId::Category};
  ASSERT_EQ(db_.GetChangeStamp(both, before), 0);
  PutReservation(db_, "2", "20260101", "0900");
  ASSERT_EQ(db_.GetChangeStamp(both, after), 0);
  EXPECT_GT(after, before) << "either of several tables";
}

TEST_P(RecordStore, AnUpdateOfWhatAnotherChangedIsSeen) {
  PutReservation(db_, "1", "20260101", "0900");
  CKovaDBSys second;
  ASSERT_EQ(second.OpenDB(folder_.Path().c_str()), 0);
  On<CReservationDB> theirs(second);
  On<CReservationDB> mine(db_);
  ASSERT_EQ(mine.GetReservationData("1"), 0);
  ASSERT_EQ(theirs.GetReservationData("1"), 0);
  PutText(theirs.record.stageCode, "02");
  ASSERT_EQ(theirs.Update(UPDATE_IF_UNCHANGED), 0);
  PutText(mine.record.stageCode, "03");
  EXPECT_EQ(mine.Update(UPDATE_IF_UNCHANGED), Code(Result::kChanged));
  ASSERT_EQ(mine.GetReservationData("1"), 0);
  EXPECT_STREQ(mine.record.stageCode, "02");
  PutText(mine.record.stageCode, "03");
  EXPECT_EQ(mine.Update(UPDATE_IF_UNCHANGED), 0);
  ASSERT_EQ(theirs.Delete(), 0);
  EXPECT_EQ(mine.Update(UPDATE_IF_UNCHANGED), Code(Result::kChanged));
  EXPECT_EQ(mine.Update(UPDATE_ALWAYS), Code(Result::kChanged)) << "there is no record to write over";
}

}  // namespace
}  // namespace kova::testing
