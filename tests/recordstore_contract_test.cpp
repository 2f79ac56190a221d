// What the record store's interface promises, whichever engine is behind it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/testing/distant_engine.h"
#include "tests/store_server.h"

namespace {

using kova::store::GetText;
using kova::store::PutText;
using kova::store::Result;

constexpr int Code(Result result) { return static_cast<int>(result); }

// The parameter: whether the store is taken for one on the other side of a network, which is read in other blocks.
class RecordStore : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    kova::testing::PutOnServer(folder_.Path(), kova::testing::NewDatabaseName());
    std::string problem;
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str(), &problem), 0) << problem;
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0) << db_.GetProblem();
    if (GetParam()) kova::store::testing::PutFarAway(db_);
  }

  static void PutReservation(CKovaDBSys& db, const char* number, const char* date, const char* time) {
    CReservationDB table(nullptr, 0);
    ASSERT_EQ(table.SetAssociatedDB(&db), 0);
    PutText(table.record.reservationNumber, number);
    PutText(table.record.reservationDate, date);
    PutText(table.record.startTime, time);
    ASSERT_EQ(table.Insert(), 0);
  }

  static void PutCategory(CKovaDBSys& db, const char* classCode, const char* code, const char* name) {
    CCategoryDB table(nullptr, 0);
    ASSERT_EQ(table.SetAssociatedDB(&db), 0);
    PutText(table.record.classCode, classCode);
    PutText(table.record.code, code);
    PutText(table.record.sortOrder, code);
    PutText(table.record.name, name);
    ASSERT_EQ(table.Insert(), 0);
  }

  kova::os::testing::TemporaryFolder folder_{"recordstore"};
  CKovaDBSys db_;
};

// A store on a server is distant anyway.
INSTANTIATE_TEST_SUITE_P(NearAndFar, RecordStore,
                         testing::ValuesIn(kova::testing::OnServer() ? std::vector{false} : std::vector{false, true}),
                         [](const auto& distant) { return distant.param ? "Far" : "Near"; });

// A positioning call on the category codes of class 1, 10 20 20x 30, told as "found" or "-" for the end.
struct PositioningCase {
  const char* name;
  int (CBaseDBCall::*call)();
  const char* key;  // class and code
  unsigned long length;
  const char* found;
};

TEST_P(RecordStore, PositionsByKeyBytesAndPrefixes) {
  for (const char* code : {"10", "20", "30"}) PutCategory(db_, "1", code, "x");
  PutCategory(db_, "2", "10", "x");
  const PositioningCase cases[] = {
      {"EQ", &CBaseDBCall::GetEQ,
       "1\0"
       "20\0",
       5, "120"},
      {"EQ missing", &CBaseDBCall::GetEQ,
       "1\0"
       "21\0",
       5, "-"},
      {"EQ prefix", &CBaseDBCall::GetEQ,
       "1\0"
       "2",
       3, "120"},
      {"EQ prefix of the class", &CBaseDBCall::GetEQ, "2", 1, "210"},
      {"EQ prefix missing", &CBaseDBCall::GetEQ, "3", 1, "-"},
      {"EQ longer than the key", &CBaseDBCall::GetEQ,
       "1\0"
       "20\0zzz",
       8, "120"},
      {"EQ empty prefix", &CBaseDBCall::GetEQ, "", 0, "110"},
      {"GREQ hit", &CBaseDBCall::GetGREQ,
       "1\0"
       "20\0",
       5, "120"},
      {"GREQ between", &CBaseDBCall::GetGREQ,
       "1\0"
       "21\0",
       5, "130"},
      {"GREQ zeros", &CBaseDBCall::GetGREQ, "\0\0\0\0\0", 5, "110"},
      {"GREQ past all", &CBaseDBCall::GetGREQ, "3", 1, "-"},
      {"LEEQ hit", &CBaseDBCall::GetLEEQ,
       "1\0"
       "20\0",
       5, "120"},
      {"LEEQ between", &CBaseDBCall::GetLEEQ,
       "1\0"
       "29\0",
       5, "120"},
      {"LEEQ prefix means its last", &CBaseDBCall::GetLEEQ, "1", 1, "130"},
      {"LEEQ before all", &CBaseDBCall::GetLEEQ, "0", 1, "-"},
      {"LESS of a hit", &CBaseDBCall::GetLESS,
       "1\0"
       "20\0",
       5, "110"},
      {"LESS prefix", &CBaseDBCall::GetLESS, "2", 1, "130"},
      {"LESS of the first", &CBaseDBCall::GetLESS,
       "1\0"
       "10\0",
       5, "-"},
  };
  CCategoryDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  for (const PositioningCase& each : cases) {
    PutText(table.record.classCode, "-");
    PutText(table.record.code, "");
    table.SetKeyBuffer(each.key, each.length);
    const int result = (table.*each.call)();
    const std::string found =
        std::string(GetText(table.record.classCode)) + std::string(GetText(table.record.code));
    EXPECT_EQ(found, each.found) << each.name;
    EXPECT_EQ(result == 0, std::string(each.found) != "-") << each.name;
    const bool ranOff = result != 0 && result != Code(Result::kNotFound);
    EXPECT_EQ(table.IsEOF() != 0, ranOff) << each.name;
  }
}

TEST_P(RecordStore, WalksForthAndBackAcrossBlocksAndEqualKeys) {
  // 1,000 reservations at the same minute and two at its sides: equal keys come in the order of writing.
  CReservationDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(table.BeginTran(), 0);
  PutReservation(db_, "first", "20260101", "0800");
  for (int i = 0; i < 1000; ++i) PutReservation(db_, std::to_string(100000 - i).c_str(), "20260101", "0900");
  PutReservation(db_, "last", "20260101", "1000");
  ASSERT_EQ(table.EndTran(), 0);

  char key[14] = "20260101";
  ASSERT_EQ(table.SetKey(6), 0);
  table.SetKeyBuffer(key, sizeof key);
  std::vector<std::string> forth;
  for (int r = table.GetGREQ(); r == 0 && !table.IsEOF(); r = table.GetNEXT()) {
    forth.emplace_back(GetText(table.record.reservationNumber));
  }
  ASSERT_EQ(forth.size(), 1002u);
  EXPECT_EQ(forth.front(), "first");
  EXPECT_EQ(forth[1], "100000");
  EXPECT_EQ(forth[1000], "99001");
  EXPECT_TRUE(table.IsEOF());
  EXPECT_EQ(table.GetNEXT(), Code(Result::kEndOfTable));

  std::vector<std::string> back;
  for (int r = table.GetLAST(); r == 0; r = table.GetPREV())
    back.emplace_back(GetText(table.record.reservationNumber));
  EXPECT_EQ(std::vector<std::string>(back.rbegin(), back.rend()), forth);

  // Turning round in the middle of a block.
  ASSERT_EQ(table.GetFIRST(), 0);
  for (int i = 0; i < 20; ++i) ASSERT_EQ(table.GetNEXT(), 0);
  ASSERT_EQ(table.GetPREV(), 0);
  EXPECT_EQ(GetText(table.record.reservationNumber), forth[19]);
  ASSERT_EQ(table.GetNEXT(), 0);
  EXPECT_EQ(GetText(table.record.reservationNumber), forth[20]);
}

TEST_P(RecordStore, AWalkEndsWhereItIsToldTo) {
  for (const char* place : {"10", "13", "1a", "1\xFF", "20", "25", "3"})
    PutCategory(db_, std::string(place, 1).c_str(), place + 1, "x");
  const struct {
    int (CBaseDBCall::*call)();
    const char *key, *end;
    std::string walk;  // the codes found from there on; "-" for not found
  } cases[] = {
      {&CBaseDBCall::GetGREQ, "1", "1", "10 13 1a 1\xFF "},
      {&CBaseDBCall::GetGREQ, "2", "2", "20 25 "},
      {&CBaseDBCall::GetFIRST, "", "2", "10 13 1a 1\xFF 20 25 "},
      {&CBaseDBCall::GetGREQ, "1", "", "10 13 1a 1\xFF 20 25 3 "},
      {&CBaseDBCall::GetGREQ, "1", nullptr, "10 13 1a 1\xFF 20 25 3 "},
      {&CBaseDBCall::GetGREQ, "11", "1", "13 1a 1\xFF "},
      {&CBaseDBCall::GetGREQ, "3", "2", ""},
      {&CBaseDBCall::GetFIRST, "", "0", ""},
      {&CBaseDBCall::GetEQ, "2", "2", "20 25 "},
      {&CBaseDBCall::GetEQ, "2", "1", "-"},
      {&CBaseDBCall::GetLEEQ, "2", "1", "25 "},  // backward there is no end, and behind it nothing follows
  };
  CCategoryDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  const auto bytes = [](const char* place) {  // class and code at their widths
    std::string key(place, std::min<std::size_t>(std::strlen(place), 1));
    if (key.size() < std::strlen(place)) key.append(1, '\0').append(place + 1);
    return key;
  };
  for (const auto& each : cases) {
    ASSERT_EQ(table.SetKey(1), 0);
    const std::string key = bytes(each.key);
    table.SetKeyBuffer(key.data(), static_cast<unsigned long>(key.size()));
    if (each.end != nullptr) table.SetWalkEnd(each.end, static_cast<unsigned long>(std::strlen(each.end)));
    std::string walk;
    int result = (table.*each.call)();
    for (; result == 0; result = table.GetNEXT())
      walk += std::string(GetText(table.record.classCode)) + std::string(GetText(table.record.code)) + " ";
    if (result == Code(Result::kNotFound)) walk = "-";
    EXPECT_EQ(walk, each.walk) << each.key << " to " << (each.end == nullptr ? "null" : each.end);
    EXPECT_EQ(table.IsEOF() != 0, each.walk != "-") << each.key;
  }

  // What is written behind the record reached is seen, also where the walk was read to its end; the end is taken off
  // and put back in the middle.
  ASSERT_EQ(table.SetKey(1), 0);
  table.SetWalkEnd("1", 1);
  table.SetKeyBuffer("1", 1);
  ASSERT_EQ(table.GetGREQ(), 0);
  for (int i = 0; i < 3; ++i) ASSERT_EQ(table.GetNEXT(), 0);
  PutCategory(db_, "1", "\xFF\xFE", "x");
  ASSERT_EQ(table.GetNEXT(), 0);
  EXPECT_STREQ(table.record.code, "\xFF\xFE");
  table.SetWalkEnd(nullptr, 0);
  ASSERT_EQ(table.GetNEXT(), 0);
  EXPECT_STREQ(table.record.classCode, "2");
  table.SetWalkEnd("1", 1);
  EXPECT_EQ(table.GetNEXT(), Code(Result::kEndOfTable));
}

TEST_P(RecordStore, WalksGoThroughBeginningsOnly) {
  for (const char* code : {"a", "b1", "b2", "b\xFF", "c", "d1", "e"}) PutCategory(db_, "1", code, "x");
  CCategoryDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  const auto walk = [&](const std::vector<std::string>& beginnings, const char* writes) {
    table.SetWalk(beginnings);
    std::string codes;
    int result = table.GetFIRST();
    for (; result == 0; result = table.GetNEXT()) {
      codes.append(table.record.code).append(" ");
      if (codes == "b1 " && writes != nullptr) PutCategory(db_, "1", writes, "x");  // the rest is read anew
    }
    EXPECT_EQ(result, Code(Result::kEndOfTable));
    return codes;
  };
  const auto key = [](const char* code) { return std::string("1").append(sizeof(tagCATEGORY::classCode) - 1, '\0') + code; };
  EXPECT_EQ(walk({key("b"), key("d")}, nullptr), "b1 b2 b\xFF d1 ");
  EXPECT_EQ(walk({key("b1"), key("d"), key("x")}, "d2"), "b1 d1 d2 ");
  EXPECT_EQ(walk({key("ab"), std::string(200, 'a')}, nullptr), "");
  EXPECT_EQ(walk({}, nullptr), "");
  ASSERT_EQ(table.SetKey(0), 0);
  ASSERT_EQ(table.GetFIRST(), 0);
  EXPECT_STREQ(table.record.code, "a") << "the walk is taken off";
}

TEST_P(RecordStore, RecordsReadAheadAreAnsweredAsOthers) {
  CPatientDB writer(nullptr, 0), table(nullptr, 0);
  ASSERT_EQ(writer.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  for (const char* code : {"", "1", "2", "3"}) {
    PutText(writer.record.patientCode, code);
    PutText(writer.record.name, code);
    PutText(writer.record.phone, "090");
    ASSERT_EQ(writer.Insert(), 0);
  }
  const std::vector<std::string> codes = {"3", "1", "", "1", "9", "2", std::string(40, '1')};
  for (const char* fields : {static_cast<const char*>(nullptr), "name"}) {
    ASSERT_EQ(table.SetFields(fields), 0);
    EXPECT_EQ(table.ReadAhead(codes), 0) << "without a view there is nothing to hold them";
    const CKovaReads reads(&db_);
    ASSERT_EQ(table.ReadAhead(codes), 0);
    ASSERT_EQ(table.ReadAhead({}), 0);
    ASSERT_EQ(table.ReadAhead(codes), 0);
    for (const std::string& code : codes) {
      const bool exists = code < "4" && code.size() < 2;
      EXPECT_EQ(table.GetPatient1Data(code.c_str()), exists ? 0 : Code(Result::kNotFound)) << code;
      if (!exists) continue;
      EXPECT_EQ(GetText(table.record.name), code);
      EXPECT_STREQ(table.record.phone, fields == nullptr ? "090" : "");
      EXPECT_EQ(table.GetNEXT(), code == "3" ? Code(Result::kEndOfTable) : 0) << code;
      ASSERT_EQ(table.GetPatient1Data(code.c_str()), 0);
      EXPECT_EQ(table.GetPREV(), code.empty() ? Code(Result::kEndOfTable) : 0) << code;
    }
  }
  // A write of its own connection, another view: they are read anew.
  ASSERT_EQ(table.SetFields(nullptr), 0);
  const CKovaReads reads(&db_);
  ASSERT_EQ(table.ReadAhead(codes), 0);
  ASSERT_EQ(table.GetPatient1Data("2"), 0);
  PutText(table.record.name, "山田");
  ASSERT_EQ(table.UpdateIfUnchanged(), 0);
  ASSERT_EQ(table.GetPatient1Data("2"), 0);
  EXPECT_STREQ(table.record.name, "山田");
  PutText(writer.record.patientCode, "9");
  ASSERT_EQ(writer.Insert(), 0);
  EXPECT_EQ(table.GetPatient1Data("9"), 0);
}

TEST_P(RecordStore, AWalkSeesWhatItsOwnConnectionWrites) {
  for (const char* number : {"1", "2", "3", "4", "5", "6"}) PutReservation(db_, number, "20260101", "0900");
  CReservationDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  std::string seen;
  for (int r = table.GetFIRST(); r == 0; r = table.GetNEXT()) {
    const std::string number(GetText(table.record.reservationNumber));
    seen += number;
    if (number == "2") {
      ASSERT_EQ(table.Delete(), 0);
    }
    if (number == "3") PutReservation(db_, "35", "20260101", "0900");
    if (number == "4") {
      PutText(table.record.memo, "changed");
      ASSERT_EQ(table.Update(UPDATE_ALWAYS), 0);
    }
  }
  EXPECT_EQ(seen, "12335456");
  EXPECT_EQ(table.GetReservationData("2"), Code(Result::kNotFound));
  ASSERT_EQ(table.GetReservationData("4"), 0);
  EXPECT_STREQ(table.record.memo, "changed");
}

TEST_P(RecordStore, BytesComeBackAsTheyWentIn) {
  CPatientDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
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

TEST_P(RecordStore, KeyOrderIsByBytesNotByUnicode) {
  // In code page 932 ア (8341) stands before 亜 (889F) and after あ (82A0); ｱ (B1) stands between; Unicode
  // has another order.
  CPatientDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  const char* names[] = {"A", "あ", "ア", "亜", "ｱ", "龠", "~"};
  for (const char* name : names) {
    table.record = {};
    PutText(table.record.patientCode, name);
    PutText(table.record.name, name);
    ASSERT_EQ(table.Insert(), 0);
  }
  ASSERT_EQ(table.SetKey(1), 0);
  std::vector<std::string> order;
  for (int r = table.GetFIRST(); r == 0; r = table.GetNEXT()) order.emplace_back(GetText(table.record.name));
  EXPECT_EQ(order, (std::vector<std::string>{"A", "~", "あ", "ア", "亜", "ｱ", "龠"}));
}

TEST_P(RecordStore, PrimaryKeyIsUniqueAndRebuiltFromTheBuffer) {
  PutCategory(db_, "1", "10", "診察台");
  CCategoryDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
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

  CCategoryDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
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
}

TEST_P(RecordStore, TransactionsKeepAllOrNothing) {
  PutReservation(db_, "1", "20260101", "0900");
  CReservationDB table(nullptr, 0);
  CCategoryDB other(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(other.SetAssociatedDB(&db_), 0);

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

TEST_P(RecordStore, APartOfTheFieldsIsReadAndNeverWritten) {
  for (int i = 10; i < 40; ++i) PutCategory(db_, "1", std::to_string(i).c_str(), "表");
  CCategoryDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(table.GetCategoryData("1", "20"), 0);
  PutText(table.record.marker, "__");
  ASSERT_EQ(table.Update(), 0);
  EXPECT_EQ(table.SetFields("name mark"), Code(Result::kBadArgument));
  ASSERT_EQ(table.SetFields("name"), 0);
  int expected = 10;
  for (int result = table.GetFIRST(); result == 0; result = table.GetNEXT(), ++expected) {
    EXPECT_EQ(GetText(table.record.code), std::to_string(expected)) << "a key's field";
    EXPECT_STREQ(table.record.name, "表");
    EXPECT_STREQ(table.record.marker, "");
  }
  EXPECT_EQ(expected, 40);
  ASSERT_EQ(table.GetCategoryData("1", "20"), 0);
  EXPECT_EQ(table.Update(), Code(Result::kBadArgument));
  ASSERT_EQ(table.SetFields(nullptr), 0);
  EXPECT_EQ(table.Update(), Code(Result::kNoRecord));
  ASSERT_EQ(table.GetCategoryData("1", "20"), 0);
  EXPECT_STREQ(table.record.marker, "__");
}

TEST_P(RecordStore, TheChangeTimeChangesWithEveryChange) {
  CCategoryDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
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
  CReservationDB mine(nullptr, 0), theirs(nullptr, 0);
  ASSERT_EQ(mine.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(theirs.SetAssociatedDB(&second), 0);
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

TEST_P(RecordStore, ReadsOfOneOperationSeeOneMoment) {
  PutReservation(db_, "1", "20260101", "0900");
  CKovaDBSys second;
  ASSERT_EQ(second.OpenDB(folder_.Path().c_str()), 0);
  CReservationDB table(nullptr, 0);
  ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
  {
    const CKovaReads reads(&db_);
    ASSERT_EQ(table.GetReservationData("1"), 0);
    PutReservation(second, "2", "20260101", "0900");
    EXPECT_EQ(table.GetReservationData("2"), Code(Result::kNotFound));
    PutReservation(db_, "3", "20260101", "0900");  // a write is done and ends the view
    EXPECT_EQ(table.GetReservationData("2"), 0);
  }
  EXPECT_EQ(table.GetReservationData("3"), 0);
}

TEST_P(RecordStore, InsertAdjustFeeNumbersAndWritesBothOrNeither) {
  CSaleDB sale(nullptr, 0);
  CSaleItemDB items(nullptr, 0);
  ASSERT_EQ(sale.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(items.SetAssociatedDB(&db_), 0);
  tagSALEITEM item{};
  CString number;
  PutText(sale.record.saleDate, "20260101");
  ASSERT_EQ(sale.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number, "000000000001");
  EXPECT_STREQ(item.saleNumber, "000000000001");
  ASSERT_EQ(sale.GetSaleData(number), 0);
  ASSERT_EQ(sale.Delete(1), 0);
  EXPECT_EQ(items.GetFIRST(), Code(Result::kEndOfTable)) << "the items went with the sale";

  // The item cannot be written: a record with its key is in the way. The sale must not stay.
  items.record = {};
  PutText(items.record.saleNumber, "000000000002");
  PutText(items.record.lineNumber, "0001");
  ASSERT_EQ(items.Insert(), 0);
  EXPECT_EQ(sale.InsertAdjustFee(number, &item, &items), Code(Result::kDuplicate));
  EXPECT_TRUE(number.IsEmpty());
  EXPECT_EQ(sale.GetFIRST(), Code(Result::kEndOfTable));
  ASSERT_EQ(items.GetFIRST(), 0);
  ASSERT_EQ(items.Delete(), 0);

  // Inside the host's transaction a failed one takes only itself back.
  ASSERT_EQ(sale.BeginTran(), 0);
  ASSERT_EQ(sale.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number, "000000000002") << "a number that was taken back is not lost";
  EXPECT_EQ(sale.InsertAdjustFee(number, nullptr, &items), Code(Result::kBadArgument));
  ASSERT_EQ(sale.EndTran(), 0);
  EXPECT_EQ(sale.GetSaleData("000000000002"), 0);

  CSaleItemDB unbound(nullptr, 0);
  EXPECT_EQ(sale.InsertAdjustFee(number, &item, &unbound), Code(Result::kBadArgument));
}

TEST_P(RecordStore, TheSpecialOperationsOfTables) {
  CPatientDB patient(nullptr, 0);
  CPatientDB2 second(nullptr, 0);
  ASSERT_EQ(patient.SetAssociatedDB(&db_), 0);
  PutText(patient.record.patientCode, "P1");
  ASSERT_EQ(patient.Insert(), 0);
  EXPECT_EQ(patient.GetPatientData(&second, "P1"), Code(Result::kNotFound)) << "the second half is missing";
  PutText(second.record.patientCode, "P1");
  ASSERT_EQ(second.Insert(), 0);
  ASSERT_EQ(patient.GetPatientData(&second, "P1"), 0);
  PutText(patient.record.name, "山田");
  second.record.mailPermission = 1;
  ASSERT_EQ(patient.UpdatePatientData(&second, UPDATE_IF_UNCHANGED), 0);
  second.record = {};
  ASSERT_EQ(patient.GetPatientData(&second, "P1"), 0);
  EXPECT_EQ(second.record.mailPermission, 1);

  PutReservation(db_, "1", "20260101", "0900");
  CReservationStandbyDB standby(nullptr, 0);
  ASSERT_EQ(standby.SetAssociatedDB(&db_), 0);
  for (const char* number : {"S1", "S2"}) {
    PutText(standby.record.standbyNumber, number);
    PutText(standby.record.reservationNumber, "1");
    ASSERT_EQ(standby.Insert(), 0);
  }
  ASSERT_EQ(standby.GetReservationStandbyDataFromReservationKey("1"), 0);
  EXPECT_STREQ(standby.record.standbyNumber, "S1");
  CReservationDB reservation(nullptr, 0);
  ASSERT_EQ(reservation.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(reservation.GetReservationData("1"), 0);
  ASSERT_EQ(reservation.Delete(), 0);
  EXPECT_EQ(standby.GetFIRST(), Code(Result::kEndOfTable)) << "its places on the waiting list went with it";

  CChargeDB charge;
  ASSERT_EQ(charge.SetAssociatedDB(&db_), 0);
  PutText(charge.record.chargeNumber, "1");
  charge.record.receipted = 1;
  ASSERT_EQ(charge.Insert(), 0);
  EXPECT_EQ(charge.Delete(0), Code(Result::kReceipted));
  EXPECT_EQ(charge.Delete(1), 0);
}

TEST_P(RecordStore, SumsOfASale) {
  CSaleItemDB items(nullptr, 0);
  ASSERT_EQ(items.SetAssociatedDB(&db_), 0);
  const struct {
    const char* line;
    std::uint8_t insured, reduced;
    std::int32_t unitPrice, quantity, amount;
  } lines[] = {{"0001", 1, 0, 234, 2, 0}, {"0002", 0, 0, 500, 2, 1000}, {"0003", 0, 1, 300, 1, 300}};
  for (const auto& line : lines) {
    items.record = {};
    PutText(items.record.saleNumber, "000000000007");
    PutText(items.record.lineNumber, line.line);
    items.record.insuranceItem = line.insured;
    items.record.reducedRate = line.reduced;
    items.record.unitPrice = line.unitPrice;
    items.record.quantity = line.quantity;
    items.record.amount = line.amount;
    ASSERT_EQ(items.Insert(), 0);
  }
  tagSALE sale{};
  PutText(sale.saleNumber, "000000000007");
  sale.tax = 124;
  sale.insuredAmount = 1400;
  sale.discount = 24;
  long points = -1, selfPaid = -1, reduced = -1, tax = -1, total = -1;
  ASSERT_EQ(CSaleDB::CalcSum(&sale, &items, &points, &selfPaid, &reduced, &tax, &total), 0);
  EXPECT_EQ((std::vector<long>{points, selfPaid, reduced, tax, total}),
            (std::vector<long>{468, 1300, 300, 124, 2800}));
}

TEST_P(RecordStore, WhatAConnectionKeepsLivesUntilItIsClosed) {
  static int alive = 0;
  struct Kept : CKovaKept {
    Kept() { ++alive; }
    ~Kept() override { --alive; }
  };
  auto* first = new Kept;
  db_.SetKept("postal codes", first);
  EXPECT_EQ(db_.GetKept("postal codes"), first);
  EXPECT_EQ(db_.GetKept("categories"), nullptr);
  db_.SetKept("postal codes", new Kept);
  EXPECT_EQ(alive, 1);
  db_.CloseDB();
  EXPECT_EQ(alive, 0);
}

TEST(Schema, KeyWidthsThatHostsRelyOn) {
  const struct {
    const char* table;
    int key;
    std::size_t width;
  } widths[] = {{"saleitem", 0, 18}, {"patient", 0, 21},  {"patient2", 0, 21},    {"patient", 1, 41},
                {"patient", 2, 41},  {"patient", 3, 21},  {"reservation", 6, 14}, {"category", 1, 8},
                {"doctor", 1, 6},    {"customtbl", 1, 13}};
  for (const auto& each : widths) {
    const kova::store::TableDef* table = kova::store::FindTable(each.table);
    ASSERT_NE(table, nullptr) << each.table;
    const int index = table->FindKey(each.key);
    ASSERT_GE(index, 0) << each.table;
    EXPECT_EQ(table->keys[static_cast<std::size_t>(index)].width, each.width)
        << each.table << " key " << each.key;
  }
}

}  // namespace
