// What the record store does when the disk, the folder, another process or the file itself is not as it
// should be.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <thread>

#include "platform/os/clock.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/sqlite/sqlite_engine.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/journal.h"
#include "platform/recordstore/table.h"
#include "tests/child_process.h"
#include "tests/recordstore/failing_vfs.h"

namespace kova::testing {
namespace {

using store::GetText;
using store::PutText;
using store::Result;
using store::On;

constexpr int Code(Result result) { return static_cast<int>(result); }

#ifdef _WIN32
constexpr int kKills = 10;  // in each mode; a process starts a hundred times slower under Wine
#else
constexpr int kKills = 60;  // in each mode
#endif

int MakeSale(CKovaDBSys& db, CString& number) {
  On<CSaleDB> sale(db);
  On<CSaleItemDB> items(db);
  tagSALEITEM item{};
  PutText(sale.record.saleDate, "20260101");
  PutText(item.itemName, "初診料");
  return sale.InsertAdjustFee(number, &item, &items);
}

// An empty database in a folder; of a network drive when `network`, which decides its journal.
void Create(const os::testing::TemporaryFolder& folder, bool network = false) {
  ASSERT_EQ(store::CreateSqliteDatabase(folder.Path(), network), Result::kDone);
}

// On one machine with write-ahead logging, and as on a network drive with a rollback journal.
class RecordStoreInBothModes : public ::testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Modes, RecordStoreInBothModes, ::testing::Bool(),
                         [](const auto& mode) { return mode.param ? "network" : "local"; });

// Empty when the database is sound and every sale has its one item; else what is wrong.
std::string Flaw(const std::string& folder, int* sales = nullptr) {
  CKovaDBSys db;
  const int opened = db.OpenDB(folder.c_str());
  if (opened != 0) return "cannot be opened: " + std::to_string(opened);
  std::string finding;
  if (db.CheckIntegrity(finding) != 0) return finding;
  std::set<std::string> numbers[2];
  On<CSaleDB> sale(db);
  On<CSaleItemDB> item(db);
  for (int r = sale.GetFIRST(); r == 0; r = sale.GetNEXT())
    numbers[0].emplace(GetText(sale.record.saleNumber));
  for (int r = item.GetFIRST(); r == 0; r = item.GetNEXT())
    numbers[1].emplace(GetText(item.record.saleNumber));
  if (sales != nullptr) *sales = static_cast<int>(numbers[0].size());
  return numbers[0] == numbers[1] ? "" : "a sale without its item, or an item without its sale";
}

std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

TEST(RecordStoreFaults, FoldersWithoutADatabase) {
  const os::testing::TemporaryFolder folder("faults");
  CKovaDBSys db;
  EXPECT_EQ(db.OpenDB(nullptr), Code(Result::kNoDatabase));
  EXPECT_EQ(db.OpenDB(""), Code(Result::kNoDatabase));
  EXPECT_EQ(db.OpenDB((folder.Path() + "missing").c_str()), Code(Result::kNoDatabase));
  EXPECT_EQ(db.OpenDB(folder.Path().c_str()), Code(Result::kNoDatabase));
  EXPECT_TRUE(std::filesystem::is_empty(folder.Native())) << "nothing was made";
  ASSERT_EQ(KovaCreateDatabase((folder.Path() + "a").c_str()), 0);
  EXPECT_EQ(KovaCreateDatabase((folder.Path() + "a").c_str()), Code(Result::kDuplicate));
  std::filesystem::remove(folder.Native() / "a" / "INDEXCONTROL.BTR");
  EXPECT_EQ(db.OpenDB((folder.Path() + "a").c_str()), Code(Result::kNoDatabase)) << "half-copied: no marker";
  WriteBytes(folder.Native() / "file", "x");
  EXPECT_NE(KovaCreateDatabase((folder.Path() + "file").c_str()), 0);
}

TEST(RecordStoreFaults, OfTwoWhoMakeADatabaseOneDoesAndBothHaveIt) {
  for (int round = 0; round < 20; ++round) {
    const os::testing::TemporaryFolder folder("faults");
    int results[2] = {-1, -1};
    std::thread other([&] { results[1] = KovaCreateDatabase(folder.Path().c_str()); });
    results[0] = KovaCreateDatabase(folder.Path().c_str());
    other.join();
    EXPECT_EQ(std::min(results[0], results[1]), 0);
    EXPECT_EQ(std::max(results[0], results[1]), Code(Result::kDuplicate));
    CKovaDBSys db;
    EXPECT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  }
}

TEST(RecordStoreFaults, JournalsForgetWhatIsOlderThanAMonth) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  On<CDoctorDB> table(db);
  PutText(table.record.code, "01");
  ASSERT_EQ(table.Insert(), 0);
  const auto change = [&] {
    PutText(table.record.name, std::string(GetText(table.record.name)) + "x");
    return table.UpdateIfUnchanged();
  };
  for (int i = 0; i < 5; ++i) ASSERT_EQ(change(), 0);
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open((folder.Argument() + "/kova.db").c_str(), &raw), SQLITE_OK);
  const store::Connection other(raw);
  ASSERT_EQ(store::Execute(raw, "UPDATE journal_doctor SET seconds = seconds - 30 * 24 * 3600 - 60 WHERE id < 4; "
                                "UPDATE journal_doctor SET seconds = seconds - 30 * 24 * 3600 + 60 WHERE id = 4"), Result::kDone);
  for (const std::vector<long long>& left : {std::vector<long long>{3, 4, 5, 6}, {4, 5, 6, 7}, {4, 5, 6, 7, 8}}) {
    ASSERT_EQ(change(), 0);
    std::vector<store::JournalEntry> history;
    ASSERT_EQ(store::ReadHistory(db, store::TableId::Doctor, reinterpret_cast<const char*>(&table.record), history), 0);
    std::vector<long long> numbers;
    for (const store::JournalEntry& entry : history) numbers.push_back(entry.number);
    EXPECT_EQ(numbers, left);
  }
}

TEST_P(RecordStoreInBothModes, AFileOfTheFirstLayoutIsUpgradedWhenNobodyHoldsIt) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder, GetParam());
  CString number;
  const auto sell = [&] {
    CKovaDBSys db;
    const int opened = db.OpenDB(folder.Path().c_str());
    return opened != 0 ? opened : MakeSale(db, number);
  };
  for (int i = 0; i < 3; ++i) ASSERT_EQ(sell(), 0);
  const std::string name = folder.Argument() + "/kova.db";
  {
    sqlite3* raw = nullptr;
    ASSERT_EQ(sqlite3_open(name.c_str(), &raw), SQLITE_OK);
    const store::Connection program(raw);
    for (const store::TableDef& table : store::AllTables())
      ASSERT_EQ(store::Execute(raw, ("DROP TABLE journal_" + std::string(table.name)).c_str()), Result::kDone);
    ASSERT_EQ(store::Execute(raw, "DELETE FROM counter WHERE name = 'write'; PRAGMA user_version = 1; BEGIN; "
                                  "SELECT * FROM counter"), Result::kDone);
    EXPECT_EQ(sell(), Code(Result::kOldVersion)) << "an older program has it open";
    ASSERT_EQ(store::Execute(raw, "COMMIT; DELETE FROM sale WHERE saleNumber = '000000000003'"), Result::kDone);
  }
  EXPECT_FALSE(std::filesystem::exists(folder.Native() / "kova.db.layout1"));
  ASSERT_EQ(sell(), 0);
  EXPECT_STREQ(number.GetString(), "000000000004");
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  store::RecordBlock sales, items;
  ASSERT_EQ(db.GetEngine()->ReadInOrder(*store::FindTable("sale"), 0, 10, sales), Result::kDone);
  ASSERT_EQ(db.GetEngine()->ReadInOrder(*store::FindTable("saleitem"), 0, 10, items), Result::kDone);
  ASSERT_EQ(sales.Size(), 3u);
  EXPECT_GT(sales.Id(2), items.Id(2)) << "behind every number that was ever given";
  db.CloseDB();
  // The copy is the file as it was.
  WriteBytes(folder.Native() / "kova.db", FileBytes(folder.Native() / "kova.db.layout1"));
  EXPECT_EQ(sell(), 0);
  EXPECT_STREQ(number.GetString(), "000000000004");
}

TEST(RecordStoreFaults, DamagedFilesAreToldAndLeftAsTheyAre) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  const std::filesystem::path file = folder.Native() / "kova.db";
  const std::string sound = FileBytes(file);
  std::mt19937 random(1);
  std::string noise(100000, '\0');
  for (char& c : noise) c = static_cast<char>(random());
  std::string newer = sound;
  newer[63] = 99;  // user_version
  std::string foreign = sound;
  foreign[68] ^= 1;  // application_id
  const struct {
    const char* name;
    std::string bytes;
    Result result;
  } cases[] = {{"empty", "", Result::kDamaged},
               {"noise", noise, Result::kDamaged},
               {"truncated", sound.substr(0, sound.size() / 2), Result::kDamaged},
               {"cut in the header", sound.substr(0, 50), Result::kDamaged},
               {"newer", newer, Result::kWrongVersion},
               {"another program's", foreign, Result::kDamaged}};
  for (const auto& each : cases) {
    WriteBytes(file, each.bytes);
    CKovaDBSys db;
    EXPECT_EQ(db.OpenDB(folder.Path().c_str()), Code(each.result)) << each.name;
    EXPECT_EQ(db.IsOpen(), 0);
    db.CloseDB();
    EXPECT_EQ(FileBytes(file), each.bytes) << each.name;
  }
}

// Damage in the middle of a table is met while reading, and every operation answers with a result.
TEST(RecordStoreFaults, DamageInTheMiddleNeverCrashes) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  {
    CKovaDBSys db;
    CString number;
    ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
    for (int i = 0; i < 50; ++i) ASSERT_EQ(MakeSale(db, number), 0);
  }
  const std::filesystem::path file = folder.Native() / "kova.db";
  const std::string sound = FileBytes(file);
  std::mt19937 random(2);
  for (int round = 0; round < 60; ++round) {
    std::string damaged = sound;
    for (int i = 0; i < 40; ++i)
      damaged[100 + random() % (damaged.size() - 100)] = static_cast<char>(random());
    WriteBytes(file, damaged);
    CKovaDBSys db;
    if (db.OpenDB(folder.Path().c_str()) != 0) continue;
    On<CSaleDB> sale(db);
    int steps = 0;
    for (int r = sale.GetFIRST(); r == 0 && steps < 1000; r = sale.GetNEXT()) ++steps;
    CString number;
    (void)MakeSale(db, number);
    std::string finding;
    (void)db.CheckIntegrity(finding);
  }
}

// Byte 18 of the file says whether it is in write-ahead mode, which must not be used over a network.
int JournalMode(const os::testing::TemporaryFolder& folder) {
  return FileBytes(folder.Native() / "kova.db")[18];
}

TEST(RecordStoreFaults, ADatabaseOpenedOverTheNetworkLeavesWriteAheadModeForGood) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  const store::TableDef& table = *store::FindTable("category");
  const std::string record(table.recordSize, '\0');
  Result result = Result::kFailed;
  store::RecordId id = 0;
  {
    const auto local = store::OpenSqliteEngine(folder.Path(), false, result);
    ASSERT_EQ(result, Result::kDone);
    ASSERT_EQ(JournalMode(folder), 2);
    std::int64_t stamp = 0;
    ASSERT_EQ(local->ChangeStamp(table, stamp), Result::kDone) << "it is held from the first read on";
    EXPECT_EQ(store::OpenSqliteEngine(folder.Path(), true, result), nullptr);
    EXPECT_EQ(result, Result::kLocalOnly) << "held in local mode on its own machine";
    EXPECT_EQ(local->Insert(table, record.data(), id), Result::kDone) << "whoever holds it is not disturbed";
    EXPECT_EQ(local->Delete(table, id), Result::kDone);
  }
  const auto remote = store::OpenSqliteEngine(folder.Path(), true, result);
  ASSERT_EQ(result, Result::kDone);
  EXPECT_EQ(JournalMode(folder), 1);
  const auto local = store::OpenSqliteEngine(folder.Path(), false, result);
  ASSERT_EQ(result, Result::kDone);
  EXPECT_EQ(remote->Insert(table, record.data(), id), Result::kDone);
  EXPECT_EQ(local->Delete(table, id), Result::kDone);
  EXPECT_EQ(JournalMode(folder), 1) << "and stays so";
}

// Prepared, or opened from another machine, before anybody on its own machine does: nobody takes it back.
TEST(RecordStoreFaults, ASharedDatabaseStaysShared) {
  Result result = Result::kFailed;
  {
    const os::testing::TemporaryFolder folder("faults");
    Create(folder);
    const auto remote = store::OpenSqliteEngine(folder.Path(), true, result);
    ASSERT_EQ(result, Result::kDone);
    const auto local = store::OpenSqliteEngine(folder.Path(), false, result);
    ASSERT_EQ(result, Result::kDone);
    EXPECT_EQ(JournalMode(folder), 1);
  }
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  db.CloseDB();
  EXPECT_EQ(JournalMode(folder), 2);
  EXPECT_EQ(KovaShareDatabase(folder.Path().c_str()), 0);
  EXPECT_EQ(KovaShareDatabase(folder.Path().c_str()), 0) << "once more does nothing";
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  EXPECT_EQ(JournalMode(folder), 1);
  EXPECT_EQ(KovaShareDatabase((folder.Path() + "missing").c_str()), Code(Result::kNoDatabase));
}

// The disk runs full, or the drive fails, at each single step of a sale in turn.
TEST_P(RecordStoreInBothModes, AFailingDiskNeverLeavesHalfASale) {
  for (const int code : {SQLITE_FULL, SQLITE_IOERR_WRITE}) {
    const os::testing::TemporaryFolder folder("faults");
    Create(folder, GetParam());
    int sales = 0;
    bool worked = false;
    for (int step = 1; !worked && step < 200; ++step) {
      CKovaDBSys db;
      ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
      CString number;
      FailFromStep(step, code);
      const int result = MakeSale(db, number);
      worked = StepsTaken() < step;
      FailFromStep(0, 0);
      EXPECT_EQ(result == 0, worked) << "step " << step;
      if (!worked && code == SQLITE_FULL && step == 1) {
        EXPECT_EQ(result, Code(Result::kFull));
      }
      EXPECT_EQ(number.IsEmpty(), !worked);
      // The connection goes on once there is room again.
      EXPECT_EQ(MakeSale(db, number), 0) << "step " << step;
      ++sales;
      db.CloseDB();
      int found = 0;
      EXPECT_EQ(Flaw(folder.Path(), &found), "") << "step " << step;
      sales += worked ? 1 : 0;
      EXPECT_EQ(found, sales) << "step " << step;
    }
    EXPECT_TRUE(worked) << "no step count was enough";
  }
}

// The same inside the host's transaction: what failed is gone, and the host is told at the latest at its end.
TEST_P(RecordStoreInBothModes, ATransactionLostToTheDiskIsLostWhole) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder, GetParam());
  bool worked = false;
  for (int step = 1; !worked && step < 200; ++step) {
    CKovaDBSys db;
    ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
    On<CSaleDB> sale(db);
    int before = 0, after = 0;
    EXPECT_EQ(Flaw(folder.Path(), &before), "");
    FailFromStep(step, SQLITE_FULL);
    CString number;
    const int begun = sale.BeginTran();
    const int first = MakeSale(db, number);
    const int second = MakeSale(db, number);
    const int ended = begun == 0 ? sale.EndTran() : begun;
    worked = StepsTaken() < step;
    FailFromStep(0, 0);
    db.CloseDB();
    EXPECT_EQ(Flaw(folder.Path(), &after), "");
    EXPECT_EQ(after - before, ended == 0 ? (first == 0) + (second == 0) : 0) << "step " << step;
    EXPECT_EQ(ended == 0 && first == 0 && second == 0, worked) << "step " << step;
  }
}

// A file that may only be read can be read; every write says so.
TEST(RecordStoreFaults, AReadOnlyFileIsReadAndNotWritten) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  const std::filesystem::path file = folder.Native() / "kova.db";
  std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::group_read);
  const bool isObeyed = !std::ofstream(file, std::ios::app).is_open();  // not by a superuser
  CKovaDBSys db;
  CString number;
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  On<CSaleDB> sale(db);
  EXPECT_EQ(sale.GetFIRST(), Code(Result::kEndOfTable));
  EXPECT_EQ(MakeSale(db, number), isObeyed ? Code(Result::kReadOnly) : 0);
  db.CloseDB();
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

// The folder goes away under an open database: every operation answers, and what comes back can be opened
// again.
TEST(RecordStoreFaults, AFolderThatVanishesNeverCrashes) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  CKovaDBSys db;
  CString number;
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  ASSERT_EQ(MakeSale(db, number), 0);
  std::error_code refused;  // on Windows an open file stays
  std::filesystem::remove_all(folder.Native(), refused);
  On<CSaleDB> sale(db);
  (void)sale.GetFIRST();
  (void)MakeSale(db, number);
  std::string finding;
  (void)db.CheckIntegrity(finding);
  db.CloseDB();
  std::filesystem::remove_all(folder.Native(), refused);
  EXPECT_EQ(db.OpenDB(folder.Path().c_str()), Code(Result::kNoDatabase));
  Create(folder);
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  EXPECT_EQ(MakeSale(db, number), 0);
}

TEST(RecordStoreFaults, ABusyStoreIsWaitedForAtMostFiveSeconds) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder);
  CKovaDBSys holder, waiter;
  ASSERT_EQ(holder.OpenDB(folder.Path().c_str()), 0);
  ASSERT_EQ(waiter.OpenDB(folder.Path().c_str()), 0);
  On<CSaleDB> sale(waiter);
  On<CSaleDB> held(holder);
  ASSERT_EQ(held.BeginTran(), 0);
  CString number;
  ASSERT_EQ(MakeSale(holder, number), 0);
  const std::int64_t began = os::MonotonicMilliseconds();
  EXPECT_EQ(MakeSale(waiter, number), Code(Result::kBusy));
  const std::int64_t waited = os::MonotonicMilliseconds() - began;
  EXPECT_GE(waited, 4500);
  EXPECT_LT(waited, 8000);
  EXPECT_EQ(sale.GetFIRST(), Code(Result::kEndOfTable)) << "reading goes on meanwhile";
  ASSERT_EQ(held.EndTran(), 0);
  EXPECT_EQ(MakeSale(waiter, number), 0);
  EXPECT_STREQ(number, "000000000002");
}

// Waits until another process has changed the sales since `stamp`, which is moved on; false when none does
// for long.
bool SalesChanged(const std::string& folder, std::int64_t& stamp) {
  CKovaDBSys db;
  if (db.OpenDB(folder.c_str()) != 0) return false;
  On<CSaleDB> sale(db);
  for (int waited = 0; waited < 30000; waited += 2) {
    const std::int64_t now = sale.GetFileTime().GetTime();
    if (now > stamp) {
      stamp = now;
      return true;
    }
    os::SleepMilliseconds(2);
  }
  return false;
}

TEST_P(RecordStoreInBothModes, AKilledProcessLeavesWholeSales) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder, GetParam());
  SetChildFolder(folder.Native());
  std::mt19937 random(3);
  std::int64_t stamp = 1;
  for (int round = 0; round < kKills; ++round) {
    ChildProcess child({"--sales", "1000000"});
    ASSERT_TRUE(SalesChanged(folder.Path(), stamp)) << "the child does nothing";
    os::SleepMilliseconds(static_cast<int>(random() % 40));
    child.Kill();
    if (round % 10 == 9) {
      ASSERT_EQ(Flaw(folder.Path()), "") << "round " << round;
    }
  }
  EXPECT_EQ(Flaw(folder.Path()), "");
}

TEST_P(RecordStoreInBothModes, ProcessesShareOneDatabase) {
  const os::testing::TemporaryFolder folder("faults");
  Create(folder, GetParam());
  SetChildFolder(folder.Native());
  {
    ChildProcess first({"--sales", "60"});
    ChildProcess second({"--sales", "60"});
    EXPECT_EQ(first.Wait(), 0);
    EXPECT_EQ(second.Wait(), 0);
  }
  int sales = 0;
  EXPECT_EQ(Flaw(folder.Path(), &sales), "");
  EXPECT_EQ(sales, 120) << "each sale got a number of its own";
}

}  // namespace

// The child's part: makes that many sales.
int MakeSales(int count) {
  CKovaDBSys db;
  if (db.OpenDB(ChildFolder().c_str()) != 0) return 2;
  CString number;
  for (int i = 0; i < count; ++i) {
    if (MakeSale(db, number) != 0) return 3;
  }
  return 0;
}

}  // namespace kova::testing

int main(int argc, char** argv) {
  const bool isChild = argc > 1 && std::string(argv[1]) == "--sales";
  if (isChild) return argc == 3 ? kova::testing::MakeSales(std::atoi(argv[2])) : 2;
  kova::testing::InstallFailingVfs();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
