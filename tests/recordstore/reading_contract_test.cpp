// What the record store promises of reading: positioning, walks, the order of keys, one moment.

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/recordstore/testing/failing_reads.h"
#include "platform/recordstore/walk.h"
#include "tests/recordstore/record_store_contract.h"

namespace kova::testing {
namespace {

// A store on a server is distant anyway.
INSTANTIATE_TEST_SUITE_P(NearAndFar, RecordStore,
                         ::testing::ValuesIn(kova::testing::OnServer() ? std::vector{false} : std::vector{false, true}),
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
  On<CCategoryDB> table(db_);
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
  On<CReservationDB> table(db_);
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
  On<CCategoryDB> table(db_);
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

// Both directions, a first field that others begin with, fields as full as can be, a stop, and what comes after it.
TEST_P(RecordStore, WalksTheRecordsOfAKeysValues) {
  for (const char* code : {"1", "12", "2"}) PutCategory(db_, "1", code, "x");
  PutCategory(db_, "2", "3", "x");
  PutCategory(db_, "", "4", "x");
  using Key = CCategoryDB::Key;
  On<CCategoryDB> table(db_);
  std::string seen;
  const auto use = [&](const tagCATEGORY& record) { seen += std::string(GetText(record.code)) + " "; };
  const auto untilTwelve = [&](const tagCATEGORY& record) {
    use(record);
    return GetText(record.code) != "12";
  };
  const auto walked = [&](int result) {
    EXPECT_EQ(result, 0);
    return std::exchange(seen, {});
  };
  EXPECT_EQ(walked(store::Walk(table, Key::InListOrder, {"1"}, use)), "1 12 2 ");
  EXPECT_EQ(walked(store::Walk(table, Key::Primary, {"1", "1"}, use)), "1 ");  // and not "12"
  EXPECT_EQ(walked(store::Walk(table, Key::Primary, {""}, use)), "4 ");
  EXPECT_EQ(walked(store::Walk(table, Key::Primary, {}, use)), "4 1 12 2 3 ");
  EXPECT_EQ(walked(store::Walk(table, Key::Primary, {"1", "9"}, use)), "");
  EXPECT_EQ(walked(store::Walk(table, Key::Primary, {"1200"}, use)), "");  // longer than the field, not cut to "12"
  EXPECT_EQ(walked(store::WalkBack(table, Key::InListOrder, {"1"}, use)), "2 12 1 ");
  EXPECT_EQ(walked(store::WalkBack(table, Key::Primary, {"11"}, use)), "");
  EXPECT_EQ(walked(store::WalkBack(table, Key::Primary, {"1"}, untilTwelve)), "2 12 ");
  EXPECT_EQ(walked(store::Walk(table, Key::Primary, {"1"}, untilTwelve)), "1 12 ");
  EXPECT_STREQ(table.record.code, "12");  // stays the current one, and the walk's end is off
  ASSERT_EQ(table.GetNEXT(), 0);
  ASSERT_EQ(table.GetNEXT(), 0);
  EXPECT_STREQ(table.record.code, "3");
}

TEST_P(RecordStore, WalksThatFailSaySo) {
  PutCategory(db_, "1", "1", "x");
  store::testing::FailReads(db_, "category");
  On<CCategoryDB> table(db_);
  const auto use = [](const tagCATEGORY&) {};
  EXPECT_EQ(store::Walk(table, CCategoryDB::Key::Primary, {"1"}, use), Code(Result::kBusy));
  EXPECT_EQ(store::WalkBack(table, CCategoryDB::Key::Primary, {"1"}, use), Code(Result::kBusy));
  db_.CloseDB();
  EXPECT_EQ(store::Walk(table, CCategoryDB::Key::Primary, {"1"}, use), Code(Result::kNotOpen));
  On<CCategoryDB> unbound(nullptr);
  EXPECT_EQ(store::WalkBack(unbound, CCategoryDB::Key::Primary, {"1"}, use), Code(Result::kNotOpen));
}

TEST_P(RecordStore, WalksGoThroughBeginningsOnly) {
  for (const char* code : {"a", "b1", "b2", "b\xFF", "c", "d1", "e"}) PutCategory(db_, "1", code, "x");
  On<CCategoryDB> table(db_);
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
  On<CPatientDB> table(db_);
  On<CPatientDB> writer(db_);
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
  On<CReservationDB> table(db_);
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

TEST_P(RecordStore, KeyOrderIsByBytesNotByUnicode) {
  // In code page 932 ア (8341) stands before 亜 (889F) and after あ (82A0); ｱ (B1) stands between; Unicode
  // has another order.
  On<CPatientDB> table(db_);
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

TEST_P(RecordStore, APartOfTheFieldsIsReadAndNeverWritten) {
  for (int i = 10; i < 40; ++i) PutCategory(db_, "1", std::to_string(i).c_str(), "表");
  On<CCategoryDB> table(db_);
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

TEST_P(RecordStore, ReadsOfOneOperationSeeOneMoment) {
  PutReservation(db_, "1", "20260101", "0900");
  CKovaDBSys second;
  ASSERT_EQ(second.OpenDB(folder_.Path().c_str()), 0);
  On<CReservationDB> table(db_);
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

}  // namespace
}  // namespace kova::testing
