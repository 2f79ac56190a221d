// Backups that are taken at work, put back, and what is saved out of damaged files.

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <thread>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/sqlite/backup.h"
#include "platform/recordstore/sqlite/sqlite_engine.h"
#include "platform/recordstore/table.h"

namespace kova::testing {
namespace {

using store::GetText;
using store::PutText;
using store::On;
using store::Result;

constexpr int Code(Result result) { return static_cast<int>(result); }

/// Patients that differ in every byte, by code.
tagPATIENTDB PatientOf(int number) {
  tagPATIENTDB patient{};
  for (const store::FieldDef& field : store::FindTable("patient")->fields) {
    if (field.kind != store::FieldKind::kText) continue;
    const std::string text = std::to_string(number) + field.name;
    PutText(reinterpret_cast<char*>(&patient) + field.offset, field.width, text);
  }
  PutText(patient.patientCode, "P" + std::to_string(100000 + number));
  PutText(patient.name, "山田 表" + std::to_string(number));
  std::memcpy(patient.otherName, "\xED\x40\xEE\xEF\x87\x90", 7);  // characters that the code page holds twice
  patient.sexCode = static_cast<std::uint8_t>(number);
  return patient;
}

/// All records of a table, by primary key, as bytes.
std::map<std::string, std::string> Records(store::Engine& engine, const store::TableDef& table) {
  std::map<std::string, std::string> records;
  store::RecordBlock block;
  store::RecordId behind = 0;
  do {
    EXPECT_EQ(engine.ReadInOrder(table, behind, 500, block), Result::kDone);
    for (std::size_t i = 0; i < block.Size(); ++i) {
      behind = block.Id(i);
      records[store::MakeKey(table.keys.front(), block.Record(i))] = std::string(block.Record(i), table.recordSize);
    }
  } while (block.Size() == 500);
  return records;
}

class Backups : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KovaCreateDatabase(Folder().c_str()), 0);
    std::filesystem::create_directories(root_.Native() / "backups");
    Open();
  }
  std::string Folder() const { return root_.Path() + "practice"; }
  std::filesystem::path File(const char* name) const { return root_.Native() / "practice" / name; }
  void Open() { ASSERT_EQ(db_.OpenDB(Folder().c_str()), 0); }

  void AddPatients(int first, int count) {
    On<CPatientDB> table(db_);
    ASSERT_EQ(table.BeginTran(), 0);
    for (int i = first; i < first + count; ++i) {
      table.record = PatientOf(i);
      ASSERT_EQ(table.Insert(), 0);
    }
    ASSERT_EQ(table.EndTran(), 0);
  }
  static int Sell(CKovaDBSys& db, CString& number) {
    On<CSaleDB> sale(db);
    On<CSaleItemDB> items(db);
    tagSALEITEM item{};
    PutText(item.itemName, "初診料");
    return sale.InsertAdjustFee(number, &item, &items);
  }
  std::string Made() {
    std::string made, problem;
    EXPECT_EQ(KovaBackUp(Folder().c_str(), (root_.Path() + "backups").c_str(), {}, made, problem), 0) << problem;
    return made;
  }

  os::testing::TemporaryFolder root_{"backup"};
  CKovaDBSys db_;
};

TEST_F(Backups, OneTakenAtWorkIsAPracticeAgain) {
  AddPatients(1, 300);
  std::ofstream(File("GLOBALSETTING.ini")) << "[GLOBAL]";
  std::filesystem::create_directories(File("templates"));
  std::ofstream(File("templates") / "0001.$mt") << "mail";
  std::atomic<bool> stop = false;
  std::atomic<int> sold = 0;
  std::thread desk([&] {
    CKovaDBSys other;
    EXPECT_EQ(other.OpenDB(Folder().c_str()), 0);
    CString number;
    while (!stop) {
      EXPECT_EQ(Sell(other, number), 0);
      ++sold;
    }
  });
  while (sold < 3) std::this_thread::yield();
  const std::string made = Made();
  const int soldMeanwhile = sold;
  stop = true;
  desk.join();
  CString number;
  ASSERT_EQ(Sell(db_, number), 0);
  const auto patients = Records(*db_.GetEngine(), *store::FindTable("patient"));
  std::string kept, problem;
  EXPECT_EQ(KovaRestore(made.c_str(), Folder().c_str(), kept, problem), Code(Result::kBusy)) << "we have it open";
  db_.CloseDB();
  std::filesystem::remove(File("GLOBALSETTING.ini"));
  std::ofstream(File("templates") / "0001.$mt") << "newer";
  ASSERT_EQ(KovaRestore(made.c_str(), Folder().c_str(), kept, problem), 0) << problem;
  Open();
  EXPECT_EQ(Records(*db_.GetEngine(), *store::FindTable("patient")), patients);
  const auto sales = Records(*db_.GetEngine(), *store::FindTable("sale"));
  EXPECT_GE(sales.size(), 3U);
  EXPECT_LE(static_cast<int>(sales.size()), soldMeanwhile + 1);
  EXPECT_EQ(Records(*db_.GetEngine(), *store::FindTable("saleitem")).size(), sales.size());
  ASSERT_EQ(Sell(db_, number), 0);
  EXPECT_EQ(std::atoi(number.GetString()), static_cast<int>(sales.size()) + 1);
  EXPECT_TRUE(std::filesystem::exists(File("GLOBALSETTING.ini"))) << "it was missing";
  EXPECT_EQ(std::filesystem::file_size(File("templates") / "0001.$mt"), 5U) << "it was there";
  // What was there before is a practice, too.
  CKovaDBSys old;
  ASSERT_EQ(old.OpenDB(kept.c_str()), 0);
  EXPECT_GT(Records(*old.GetEngine(), *store::FindTable("sale")).size(), sales.size());
}

TEST_F(Backups, ADamagedOneIsRefusedAndAStoppedOneIsNone) {
  AddPatients(1, 300);
  std::string made, kept, problem;
  int asked = 0;
  EXPECT_EQ(KovaBackUp(Folder().c_str(), (root_.Path() + "backups").c_str(), [&] { return ++asked < 1; }, made, problem),
            Code(Result::kBusy));
  EXPECT_EQ(KovaBackUp(Folder().c_str(), (root_.Path() + "nowhere").c_str(), {}, made, problem), Code(Result::kNoDatabase));
  EXPECT_TRUE(std::filesystem::is_empty(root_.Native() / "backups"));
  made = Made();
  db_.CloseDB();
  const auto backup = *std::filesystem::directory_iterator(root_.Native() / "backups");
  std::fstream file(backup.path() / "kova.db", std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(-4096 * 3, std::ios::end);
  file << std::string(4096, '\0');
  file.close();
  const auto size = std::filesystem::file_size(File("kova.db"));
  EXPECT_EQ(KovaRestore(made.c_str(), Folder().c_str(), kept, problem), Code(Result::kDamaged));
  EXPECT_NE(problem, "");
  EXPECT_EQ(kept, "");
  EXPECT_EQ(std::filesystem::file_size(File("kova.db")), size);
  std::filesystem::remove(backup.path() / "INDEXCONTROL.BTR");
  EXPECT_EQ(KovaRestore(made.c_str(), Folder().c_str(), kept, problem), Code(Result::kNoDatabase));
  Open();
}

TEST_F(Backups, NothingOfADamagedDatabaseReachesTheRestoredOne) {
  AddPatients(1, 20);
  const std::string made = Made();
  AddPatients(100, 20);
  std::filesystem::copy_file(File("kova.db-wal"), root_.Native() / "wal");
  db_.CloseDB();
  std::filesystem::copy_file(root_.Native() / "wal", File("kova.db-wal"));
  std::ofstream(File("kova.db"), std::ios::binary) << std::string(50000, 'x');
  std::string kept, problem;
  ASSERT_EQ(KovaRestore(made.c_str(), Folder().c_str(), kept, problem), 0) << problem;
  Open();
  EXPECT_EQ(Records(*db_.GetEngine(), *store::FindTable("patient")).size(), 20U);
  int files = 0;
  for (const auto& each : std::filesystem::directory_iterator(root_.Native() / "practice"))
    for (const char* name : {"kova.db", "kova.db-wal"}) files += std::filesystem::exists(each.path() / name) ? 1 : 0;
  EXPECT_EQ(files, 2) << "the damaged one is kept with what belongs to it";
}

// Pages that are lost at random: what is saved is as it was, what is lost is told.
TEST_F(Backups, WhatIsSavedOfADamagedFileIsTrue) {
  AddPatients(1, 1200);
  CString number;
  for (int i = 0; i < 30; ++i) ASSERT_EQ(Sell(db_, number), 0);
  std::map<std::string_view, std::map<std::string, std::string>> all;
  for (const store::TableDef& table : store::AllTables()) all[table.name] = Records(*db_.GetEngine(), table);
  db_.CloseDB();
  std::ifstream in(File("kova.db"), std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(in), {}};
  in.close();
  const std::size_t pages = whole.size() / 4096;
  std::mt19937 random(7);
  int worked = 0;
  long long lost = 0;
  for (int round = 0; round < 12; ++round) {
    std::string bytes = whole;
    for (int i = 0; i <= round % 4; ++i) {
      const std::size_t page = 1 + random() % (pages - 1);
      if (round % 3 == 0) std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(page * 4096), 4096, static_cast<char>(random()));
      if (round % 3 == 1) std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(page * 4096), 4096, '\0');
    }
    if (round % 3 == 2) bytes.resize(bytes.size() * (60 + random() % 40) / 100);
    std::ofstream(File("kova.db"), std::ios::binary) << bytes;
    const std::string to = root_.Path() + "saved" + std::to_string(round);
    std::vector<store::SalvagedTable> tables;
    std::string problem;
    const Result result = store::SalvageSqlite(Folder(), to, tables, problem);
    std::ifstream after(File("kova.db"), std::ios::binary);
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>(after), {}}), bytes) << "the damaged file stays as it is";
    CKovaDBSys saved;
    if (result != Result::kDone) {
      EXPECT_NE(saved.OpenDB(to.c_str()), 0) << "nothing saved is no empty practice";
      continue;
    }
    ++worked;
    ASSERT_EQ(saved.OpenDB(to.c_str()), 0);
    for (const store::SalvagedTable& table : tables) {
      const auto& before = all[table.name];
      const auto records = Records(*saved.GetEngine(), *store::FindTable(table.name));
      EXPECT_EQ(static_cast<long long>(records.size()), table.saved);
      for (const auto& [key, record] : records) EXPECT_TRUE(before.contains(key) && before.at(key) == record) << table.name << round;
      const auto told = static_cast<std::size_t>(table.saved + table.lost);
      EXPECT_LE(told, before.size()) << table.name << round;
      EXPECT_TRUE(!table.isWhole || told == before.size()) << table.name << round << ": " << told;
      lost += table.lost;
    }
    std::string finding;
    EXPECT_EQ(saved.CheckIntegrity(finding), 0) << finding;
    EXPECT_EQ(Sell(saved, number), 0);
    EXPECT_GT(std::atoi(number.GetString()), all["sale"].size() == Records(*saved.GetEngine(), *store::FindTable("sale")).size() - 1 ? 30 : 0);
  }
  EXPECT_GE(worked, 8);
  EXPECT_GT(lost, 0);
}

}  // namespace
}  // namespace kova::testing
