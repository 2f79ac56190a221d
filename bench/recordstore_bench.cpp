// The record store against prepared SQLite statements on the same table, a million reservations.
// recordstore_bench PRACTICE: the large practice's folder. What it inserts it takes back.

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "bench/raw_table.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"

namespace kova::bench {
namespace {

using store::GetText;
using store::PutText;
using store::On;

constexpr int kRounds = 41;
constexpr int kReads = 2000;
constexpr int kWalks = 10;
constexpr int kInserts = 2000;

const store::TableDef& Table() { return *store::FindTable("reservation"); }

std::vector<tagRESERVATION> PickRecords(CKovaDBSys& db) {
  On<CReservationDB> table(db);
  std::mt19937 random(7);
  std::vector<tagRESERVATION> all, picked;
  for (int r = table.GetFIRST(); r == 0; r = table.GetNEXT()) {
    if (random() % 100 == 0) all.push_back(table.record);
  }
  for (int i = 0; i < kReads; ++i) picked.push_back(all[random() % all.size()]);
  return picked;
}

void PointReads(CKovaDBSys& db, RawDatabase& raw, const std::vector<tagRESERVATION>& picked) {
  On<CReservationDB> table(db);
  const std::string select = "SELECT " + Columns(Table()) + " FROM reservation WHERE ";
  sqlite3_stmt* equal = raw.Prepare(select + "key0 = ?");
  sqlite3_stmt* atLeast = raw.Prepare(select + "key6 >= ? ORDER BY key6, id LIMIT 1");
  tagRESERVATION record{};
  const auto rawReads = [&](sqlite3_stmt* statement, std::size_t keyIndex) {
    raw.Run("BEGIN");
    for (const tagRESERVATION& each : picked) {
      const std::string key = store::MakeKey(Table().keys[keyIndex], reinterpret_cast<const char*>(&each));
      sqlite3_bind_blob(statement, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
      Check(sqlite3_step(statement) == SQLITE_ROW, "raw read");
      ReadRow(statement, Table(), reinterpret_cast<char*>(&record));
      sqlite3_reset(statement);
    }
    raw.Run("COMMIT");
  };
  Compare(
      "GetEQ by number", "<= 1.3", kRounds, kReads,
      [&](int) {
        const CKovaReads reads(&db);
        Check(table.SetKey(0) == 0, "key");
        for (const tagRESERVATION& each : picked) {
          table.SetKeyBuffer(each.reservationNumber, sizeof each.reservationNumber);
          Check(table.GetEQ() == 0, "GetEQ");
        }
      },
      [&](int) { rawReads(equal, 0); });
  const auto day = static_cast<std::size_t>(Table().FindKey(6));
  Compare(
      "GetGREQ by day and time", "<= 1.3", kRounds, kReads,
      [&](int) {
        const CKovaReads reads(&db);
        Check(table.SetKey(6) == 0, "key");
        for (const tagRESERVATION& each : picked) {
          char key[14] = {};
          std::memcpy(key, each.reservationDate, 9);
          std::memcpy(key + 9, each.startTime, 5);
          table.SetKeyBuffer(key, sizeof key);
          Check(table.GetGREQ() == 0, "GetGREQ");
        }
      },
      [&](int) { rawReads(atLeast, day); });
  sqlite3_finalize(equal);
  sqlite3_finalize(atLeast);
}

void Walks(CKovaDBSys& db, RawDatabase& raw, const std::vector<tagRESERVATION>& picked) {
  On<CReservationDB> table(db);
  Check(table.SetKey(6) == 0, "bind");
  sqlite3_stmt* walk =
      raw.Prepare("SELECT " + Columns(Table()) + " FROM reservation WHERE key6 >= ? ORDER BY key6, id");
  tagRESERVATION record{};
  Compare(
      "walk of 1,000 by GetNEXT", "<= 1.3", kRounds, kWalks,
      [&](int) {
        for (int i = 0; i < kWalks; ++i) {
          const CKovaReads reads(&db);
          table.SetKeyBuffer(picked[static_cast<std::size_t>(i)].reservationDate, 9);
          int r = table.GetGREQ();
          for (int n = 1; n < 1000 && r == 0; ++n) r = table.GetNEXT();
        }
      },
      [&](int) {
        for (int i = 0; i < kWalks; ++i) {
          raw.Run("BEGIN");
          sqlite3_bind_blob(walk, 1, picked[static_cast<std::size_t>(i)].reservationDate, 8, SQLITE_STATIC);
          for (int n = 0; n < 1000 && sqlite3_step(walk) == SQLITE_ROW; ++n) {
            ReadRow(walk, Table(), reinterpret_cast<char*>(&record));
          }
          sqlite3_reset(walk);
          raw.Run("COMMIT");
        }
      });
  sqlite3_finalize(walk);
}

void Inserts(CKovaDBSys& db, RawDatabase& raw, const tagRESERVATION& model) {
  On<CReservationDB> table(db);
  sqlite3_stmt* insert = raw.Prepare(InsertSql(Table()));
  tagRESERVATION record = model;
  PutText(record.memo, "0123456789");
  const auto number = [&](int i) {
    char text[16];
    std::snprintf(text, sizeof text, "X%09d", i);
    PutText(record.reservationNumber, text);
  };
  Compare(
      "Insert in a transaction of 2,000, taken back", "<= 1.3", kRounds, kInserts,
      [&](int) {
        Check(table.BeginTran() == 0, "BeginTran");
        for (int i = 0; i < kInserts; ++i) {
          number(i);
          table.record = record;
          Check(table.Insert() == 0, "Insert");
        }
        Check(table.AbortTran() == 0, "AbortTran");
      },
      [&](int) {
        raw.Run("BEGIN IMMEDIATE");
        for (int i = 0; i < kInserts; ++i) {
          number(i);
          BindRow(insert, Table(), reinterpret_cast<const char*>(&record));
          Check(sqlite3_step(insert) == SQLITE_DONE, "raw insert");
          sqlite3_reset(insert);
        }
        raw.Run("ROLLBACK");
      });
  sqlite3_finalize(insert);
}

/// What it costs that a write over a record enters what the record was: the same statements by hand, without that.
void WritesWithJournal(CKovaDBSys& db, RawDatabase& raw, const std::vector<tagRESERVATION>& picked, bool isDurable) {
  constexpr int kWrites = 500;
  On<CReservationDB> table(db);
  const std::string select = "SELECT " + Columns(Table()) + " FROM reservation WHERE ";
  sqlite3_stmt* find = raw.Prepare(select + "key0 = ?");
  sqlite3_stmt* again = raw.Prepare(select + "id = ?");
  sqlite3_stmt* update = raw.Prepare(UpdateSql(Table()));
  sqlite3_stmt* stamp = raw.Prepare("UPDATE change_stamp SET stamp = stamp + 1 WHERE tableName = 'reservation'");
  const auto memo = [](tagRESERVATION& record, int round, int i) { PutText(record.memo, std::to_string(round * kWrites + i)); };
  const auto row = [](sqlite3_stmt* statement) {
    tagRESERVATION record{};
    Check(sqlite3_step(statement) == SQLITE_ROW, "raw read");
    ReadRow(statement, Table(), reinterpret_cast<char*>(&record));
    return record;
  };
  Compare(
      isDurable ? "Update, each on the disk, with its journal" : "Update in a transaction, with its journal", "<= 1.3",
      isDurable ? 11 : kRounds, kWrites,
      [&](int round) {
        if (!isDurable) Check(table.BeginTran() == 0, "BeginTran");
        for (int i = 0; i < kWrites; ++i) {
          Check(table.GetReservationData(std::string(GetText(picked[static_cast<std::size_t>(i)].reservationNumber)).c_str()) == 0, "read");
          memo(table.record, round, i);
          Check(table.Update(UPDATE_IF_UNCHANGED) == 0, "Update");
        }
        if (!isDurable) Check(table.EndTran() == 0, "EndTran");
      },
      [&](int round) {
        if (!isDurable) raw.Run("BEGIN IMMEDIATE");
        for (int i = 0; i < kWrites; ++i) {
          const std::string key = store::MakeKey(Table().keys[0], reinterpret_cast<const char*>(&picked[static_cast<std::size_t>(i)]));
          sqlite3_bind_blob(find, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
          tagRESERVATION record = row(find);
          const sqlite3_int64 id = sqlite3_column_int64(find, 0);
          sqlite3_reset(find);
          if (isDurable) raw.Run("BEGIN IMMEDIATE");
          sqlite3_bind_int64(again, 1, id);
          const tagRESERVATION stored = row(again);
          sqlite3_reset(again);
          Check(std::memcmp(&stored, &record, sizeof record) == 0, "unchanged");
          memo(record, -round, i);
          BindRow(update, Table(), reinterpret_cast<const char*>(&record));
          sqlite3_bind_int64(update, sqlite3_bind_parameter_count(update), id);
          Check(sqlite3_step(update) == SQLITE_DONE, "raw update");
          sqlite3_reset(update);
          if (isDurable) Check(sqlite3_step(stamp) == SQLITE_DONE && sqlite3_reset(stamp) == SQLITE_OK, "raw stamp");
          if (isDurable) raw.Run("COMMIT");
        }
        if (!isDurable) raw.Run("COMMIT");
      });
  for (sqlite3_stmt* each : {find, again, update, stamp}) sqlite3_finalize(each);
}

int Main(const std::string& practice) {
  CKovaDBSys db;
  Check(db.OpenDB(practice.c_str()) == 0, "OpenDB");
  RawDatabase raw(practice + "/kova.db");
  const std::vector<tagRESERVATION> picked = PickRecords(db);
  std::printf("record of %zu bytes\n", sizeof(tagRESERVATION));
  PointReads(db, raw, picked);
  Walks(db, raw, picked);
  Inserts(db, raw, picked.front());
  WritesWithJournal(db, raw, picked, false);
  WritesWithJournal(db, raw, picked, true);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 2) return kova::bench::Main(argv[1]);
  std::fprintf(stderr, "usage: recordstore_bench PRACTICE\n");
  return 2;
}
