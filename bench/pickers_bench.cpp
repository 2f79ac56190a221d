// The patient query over 100,000 patients and the cached lists. pickers_bench FOLDER: an empty folder of its
// own on the disk to measure.

#include <string>

#include "bench/paired.h"
#include "bench/raw_table.h"
#include "pickers/master_choices.h"
#include "pickers/patient_query.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"

namespace kova::bench {
namespace {

using pickers::SearchMode;
using store::GetText;
using store::PutText;
using store::On;

constexpr int kPatients = 100000;
constexpr int kFamilies = 40;
constexpr int kCategories = 40;

std::string Number(const char* format, int number) {
  char text[16];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

// One in forty patients has the family name number `family`; its first character is that of no other one.
std::string FamilyName(int family) { return std::string("\x88") + static_cast<char>(0x9F + family) + "田"; }
std::string FamilyReading(int family) { return std::string(1, static_cast<char>(0xB1 + family)) + "ﾀﾞ"; }

void PutPatients(CKovaDBSys& db) {
  On<CPatientDB> table(db);
  Check(table.BeginTran() == 0, "begin");
  for (int i = 0; i < kPatients; ++i) {
    const int family = static_cast<int>(i * 7919LL % kFamilies);
    PutText(table.record.patientCode, Number("%010d", i));
    PutText(table.record.name, FamilyName(family) + "　花子");
    PutText(table.record.reading, FamilyReading(family) + " ﾊﾅｺ");
    PutText(table.record.maidenName, i % 5 == 0 ? FamilyName((family + 37) % kFamilies) : "");
    PutText(table.record.birthDate, "19801122");
    PutText(table.record.address, "表町一丁目２番地");
    PutText(table.record.phone, "03-0000-0000");
    table.record.sexCode = static_cast<std::uint8_t>(1 + i % 2);
    Check(table.Insert() == 0, "insert");
  }
  Check(table.EndTran() == 0, "end");
}

/// The whole records from a key on, read by hand: up to the first that does not begin with it, or `toTheEnd`.
int ReadRangeRaw(RawDatabase& raw, sqlite3_stmt* walk, std::size_t keyColumn, const std::string& key,
                 bool toTheEnd) {
  const store::TableDef& table = *store::FindTable("patient");
  tagPATIENTDB record{};
  int count = 0;
  raw.Run("BEGIN");
  sqlite3_bind_blob(walk, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
  while (sqlite3_step(walk) == SQLITE_ROW) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(walk, static_cast<int>(keyColumn)));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(walk, static_cast<int>(keyColumn)));
    if (!toTheEnd && !std::string_view(bytes, length).starts_with(key)) break;
    ReadRow(walk, table, reinterpret_cast<char*>(&record));
    ++count;
  }
  sqlite3_reset(walk);
  raw.Run("COMMIT");
  return count;
}

void QueryPatients(CKovaDBSys& db, RawDatabase& raw) {
  const struct {
    const char* name;
    SearchMode mode;
    const char* key;  // column of the mode's key
    std::string text;
    bool withMaidenName;
    int hits;
  } cases[] = {
      {"patients by name, 2,500 of 100,000", SearchMode::kName, "key1", FamilyName(17), false, 2500},
      {"patients by reading, 2,500 of 100,000", SearchMode::kKana, "key2", FamilyReading(17), false, 2500},
      {"patients by ID, 1,000 of 100,000", SearchMode::kId, "key3", "0000042", false, 1000},
      {"all 100,000 patients by name", SearchMode::kName, "key1", "", false, kPatients},
      {"by name or maiden name, to the table's end", SearchMode::kName, "key1", FamilyName(17), true, 5000},
  };
  const store::TableDef& table = *store::FindTable("patient");
  for (const auto& each : cases) {
    const std::string key = each.key;
    sqlite3_stmt* walk = raw.Prepare("SELECT " + Columns(table) + ", " + key + " FROM patient WHERE " + key +
                                     " >= ? ORDER BY " + key + ", id");
    Compare(
        each.name, "<= 1.5", each.hits == kPatients ? 11 : 21, 1,
        [&](int) {
          const auto hits = pickers::QueryPatients(&db, each.mode, each.text, each.withMaidenName);
          Check(static_cast<int>(hits.size()) == each.hits, "QueryPatients");
        },
        [&](int) {
          const int count = ReadRangeRaw(raw, walk, table.fields.size() + 2, each.text, each.withMaidenName);
          Check(count >= each.hits, "raw range");
        });
    sqlite3_finalize(walk);
  }
}

void FillFromCache(CKovaDBSys& db) {
  constexpr int kFills = 200;
  On<CCategoryDB> table(db);
  Check(table.BeginTran() == 0, "begin");
  for (int i = 0; i < kCategories; ++i) {
    PutText(table.record.classCode, "1");
    PutText(table.record.code, Number("%02d", i));
    PutText(table.record.name, "診療ユニット" + std::to_string(i));
    Check(table.Insert() == 0, "insert");
  }
  Check(table.EndTran() == 0, "end");
  const auto fill = [&](int useCache) {
    db.useCache = useCache;
    for (int i = 0; i < kFills; ++i) {
      const pickers::ChoiceList list = pickers::CategoryChoices(&db, "1", {"07", true});
      Check(list.entries.size() == kCategories + 1 && list.selected == 8, "CategoryChoices");
    }
  };
  Compare(
      "list of 40 categories, cached against read", "<= 0.1", 41, kFills, [&](int) { fill(1); },
      [&](int) { fill(0); });
}

int Main(const std::string& folder) {
  const std::string practice = folder + "/pickers_practice";
  Check(KovaCreateDatabase(practice.c_str()) == 0, "create");
  CKovaDBSys db;
  Check(db.OpenDB(practice.c_str()) == 0, "OpenDB");
  PutPatients(db);
  RawDatabase raw(practice + "/kova.db");
  QueryPatients(db, raw);
  FillFromCache(db);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 2) return kova::bench::Main(argv[1]);
  std::fprintf(stderr, "usage: pickers_bench FOLDER\n");
  return 2;
}
