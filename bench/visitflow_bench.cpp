// The visit flow board. visitflow_bench PRACTICE FOLDER: the large practice's folder, in which one more day
// is put and taken back, and an empty folder of its own on the disk to measure.

#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "bench/raw_table.h"
#include "foundation/settings.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "visitflow/board.h"
#include "visitflow/moves.h"

namespace kova::bench {
namespace {

using store::GetText;
using store::PutText;
using store::On;
using visitflow::Board;
using visitflow::BoardButton;
using visitflow::DayRow;
using visitflow::Stage;

constexpr const char* kDay = "21000104";
constexpr int kReservations = 300;

const std::vector<Stage> kStages = {{10, "arrived"}, {20, "treated"}, {30, "paying"}};

std::string Number(const char* format, int number) {
  char text[16];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

const store::TableDef& Reservations() { return *store::FindTable("reservation"); }

// ---- A day of 300 in the large practice.

std::vector<std::string> PickPatients(CKovaDBSys& db) {
  On<CPatientDB> table(db);
  std::vector<std::string> all, picked;
  for (int r = table.GetFIRST(); r == 0; r = table.GetNEXT())
    all.emplace_back(GetText(table.record.patientCode));
  std::mt19937 random(7);
  for (int i = 0; i < kReservations; ++i) picked.push_back(all[random() % all.size()]);
  return picked;
}

void PutDay(CKovaDBSys& db, const std::vector<std::string>& patients) {
  On<CReservationDB> table(db);
  Check(table.GetFIRST() == 0 && table.BeginTran() == 0, "begin");
  const tagRESERVATION model = table.record;
  for (int i = 0; i < kReservations; ++i) {
    table.record = model;
    PutText(table.record.reservationNumber, Number("V%09d", i));
    PutText(table.record.reservationDate, kDay);
    PutText(table.record.startTime, Number("%04d", 900 + i / 4));
    PutText(table.record.patientCode, patients[static_cast<std::size_t>(i)]);
    PutText(table.record.stageCode, i % 3 == 0 ? "" : i % 3 == 1 ? "20" : "01");
    table.record.status = 0;
    Check(table.Insert() == 0, "insert");
  }
  Check(table.EndTran() == 0, "end");
}

void TakeDayBack(CKovaDBSys& db) {
  On<CReservationDB> table(db);
  Check(table.BeginTran() == 0, "begin");
  for (int i = 0; i < kReservations; ++i) {
    if (table.GetReservationData(Number("V%09d", i).c_str()) == 0)
      Check(table.CBaseDBCall::Delete() == 0, "delete");
  }
  Check(table.EndTran() == 0, "end");
}

/// One join that gives the board's rows: whole reservations, and the patients' two fields.
std::string JoinSql() {
  std::string columns = "r.id, r.exact";
  for (const store::FieldDef& field : Reservations().fields) columns += ", r." + field.name;
  return "SELECT " + columns +
         ", p.caseNumber, p.name FROM reservation r JOIN patient p ON p.key0 = CAST(r.patientCode AS BLOB) "
         "WHERE r.key6 >= ?1 AND r.key6 < ?2 AND r.status < 2 ORDER BY r.key6, r.id";
}

std::size_t Rows(const Board& board) {
  return board.before.size() + board.staged.size() + board.finished.size();
}

void ReadADay(CKovaDBSys& db, RawDatabase& raw) {
  constexpr int kDays = 10;
  sqlite3_stmt* join = raw.Prepare(JoinSql());
  const auto text = [&](int column) {
    return reinterpret_cast<const char*>(sqlite3_column_text(join, column));
  };
  const auto rawDay = [&] {
    std::vector<DayRow> rows;
    sqlite3_bind_blob(join, 1, kDay, 8, SQLITE_STATIC);
    sqlite3_bind_blob(join, 2, "21000105", 8, SQLITE_STATIC);
    while (sqlite3_step(join) == SQLITE_ROW) {
      DayRow& row = rows.emplace_back();
      ReadRow(join, Reservations(), reinterpret_cast<char*>(&row.reservation));
      const int behind = static_cast<int>(Reservations().fields.size()) + 2;
      row.caseNumber = text(behind);
      row.patientName = text(behind + 1);
    }
    sqlite3_reset(join);
    return rows;
  };
  const auto place = [](const std::vector<DayRow>& rows) {
    Check(Rows(visitflow::PlaceRows(rows, kStages, true, 600)) == kReservations, "rows");
  };
  Compare(
      "board: a day of 300 read and placed", "<= 1.5", 41, kDays,
      [&](int) {
        for (int i = 0; i < kDays; ++i) place(visitflow::ReadDay(&db, kDay).rows);
      },
      [&](int) {
        for (int i = 0; i < kDays; ++i) place(rawDay());
      });
  sqlite3_finalize(join);
}

void IdleTick(CKovaDBSys& db, RawDatabase& raw) {
  constexpr int kTicks = 2000;
  sqlite3_stmt* one = raw.Prepare("SELECT stageCode FROM reservation WHERE key0 = ?");
  Compare(
      "board: an idle tick", "<= 1.5", 41, kTicks,
      [&](int) {
        std::string stamp;
        for (int i = 0; i < kTicks; ++i) Check(visitflow::ReadBoardStamp(&db, stamp), "stamp");
      },
      [&](int) {
        for (int i = 0; i < kTicks; ++i) {
          sqlite3_bind_blob(one, 1, "V000000007", 10, SQLITE_STATIC);
          Check(sqlite3_step(one) == SQLITE_ROW, "row");
          sqlite3_reset(one);
        }
      });
  sqlite3_finalize(one);
}

// ---- One visited move with its sale.

constexpr int kMoves = 50;
constexpr int kRounds = 21;

/// Reservations with a fee, and the masters of the fee.
void PutFees(CKovaDBSys& db) {
  CCreditCategoryDB category(nullptr, 0);
  CCreditItemDB item(nullptr, 0);
  CReservationDB table(nullptr, 0);
  for (CBaseDBCall* each : std::initializer_list<CBaseDBCall*>{&category, &item, &table})
    Check(each->SetAssociatedDB(&db) == 0, "bind");
  PutText(category.record.code, "01");
  PutText(item.record.categoryCode, "01");
  PutText(item.record.code, "003");
  PutText(item.record.name, "toothbrush");
  PutText(table.record.patientCode, "0000012345");
  PutText(table.record.reservationDate, kDay);
  PutText(table.record.feeCategoryCode, "01");
  PutText(table.record.feeItemCode, "003");
  table.record.hasFee = 1;
  table.record.feeAmount = 1080;
  Check(table.BeginTran() == 0 && category.Insert() == 0 && item.Insert() == 0, "insert");
  for (int i = 0; i < kMoves * (kRounds + 1); ++i) {
    PutText(table.record.reservationNumber, Number("%012d", i));
    Check(table.Insert() == 0, "insert");
  }
  Check(table.EndTran() == 0, "end");
}

std::string UpdateSql(const store::TableDef& table) {
  std::string sets;
  for (const store::FieldDef& field : table.fields) sets += field.name + " = ?, ";
  for (const store::KeyDef& key : table.keys) sets += "key" + std::to_string(key.number) + " = ?, ";
  sets.resize(sets.size() - 2);
  return "UPDATE " + std::string(table.name) + " SET " + sets + " WHERE id = ?";
}

/// The statements of a move, by hand.
class RawMove {
 public:
  explicit RawMove(RawDatabase& raw)
      : raw_(raw),
        find_(raw.Prepare("SELECT " + Columns(Reservations()) + " FROM reservation WHERE key0 = ?")),
        category_(raw.Prepare("SELECT " + Columns(*store::FindTable("creditcategory")) +
                              " FROM creditcategory WHERE key0 = CAST('01' AS BLOB)")),
        item_(raw.Prepare("SELECT " + Columns(*store::FindTable("credititem")) +
                          " FROM credititem WHERE key0 = CAST('01' || char(0) || '003' AS BLOB)")),
        number_(
            raw.Prepare("UPDATE counter SET value = value + 1 WHERE name = 'saleNumber' RETURNING value")),
        sale_(raw.Prepare(InsertSql(*store::FindTable("sale")))),
        saleItem_(raw.Prepare(InsertSql(*store::FindTable("saleitem")))),
        update_(raw.Prepare(UpdateSql(Reservations()))),
        stamp_(raw.Prepare("UPDATE change_stamp SET stamp = MAX(stamp + 1, ?) WHERE tableName = ?")) {}
  ~RawMove() {
    for (sqlite3_stmt* each : {find_, category_, item_, number_, sale_, saleItem_, update_, stamp_})
      sqlite3_finalize(each);
  }

  void Do(int reservation) {
    raw_.Run("BEGIN IMMEDIATE");
    const std::string key = Number("%012d", reservation);
    sqlite3_bind_blob(find_, 1, key.data(), 12, SQLITE_STATIC);
    Check(sqlite3_step(find_) == SQLITE_ROW, "find");
    tagRESERVATION record{};
    ReadRow(find_, Reservations(), reinterpret_cast<char*>(&record));
    const sqlite3_int64 id = sqlite3_column_int64(find_, 0);
    sqlite3_reset(find_);
    Run(category_, SQLITE_ROW);
    Run(item_, SQLITE_ROW);
    Check(sqlite3_step(number_) == SQLITE_ROW, "number");
    const std::string number = Number("%012d", sqlite3_column_int(number_, 0));
    Run(number_, SQLITE_DONE);
    PutSale(record, number);
    record.visited = 1;
    PutText(record.stageCode, "10");
    PutText(record.stageTime, "0905");
    PutText(record.saleNumber, number);
    BindRow(update_, Reservations(), reinterpret_cast<const char*>(&record));
    sqlite3_bind_int64(update_, sqlite3_bind_parameter_count(update_), id);
    Run(update_, SQLITE_DONE);
    for (const char* table : {"reservation", "sale", "saleitem"}) {
      sqlite3_bind_int64(stamp_, 1, std::time(nullptr));
      sqlite3_bind_text(stamp_, 2, table, -1, SQLITE_STATIC);
      Run(stamp_, SQLITE_DONE);
    }
    raw_.Run("COMMIT");
  }

 private:
  void Run(sqlite3_stmt* statement, int expected) {
    Check(sqlite3_step(statement) == expected, sqlite3_sql(statement));
    sqlite3_reset(statement);
  }
  void PutSale(const tagRESERVATION& record, const std::string& number) {
    tagSALE sale{};
    tagSALEITEM item{};
    PutText(sale.saleNumber, number);
    PutText(sale.saleDate, GetText(record.reservationDate));
    PutText(sale.patientCode, GetText(record.patientCode));
    sale.total = record.feeAmount;
    PutText(item.saleNumber, number);
    PutText(item.lineNumber, "0001");
    PutText(item.itemName, "toothbrush");
    BindRow(sale_, *store::FindTable("sale"), reinterpret_cast<const char*>(&sale));
    Run(sale_, SQLITE_DONE);
    BindRow(saleItem_, *store::FindTable("saleitem"), reinterpret_cast<const char*>(&item));
    Run(saleItem_, SQLITE_DONE);
  }

  RawDatabase& raw_;
  sqlite3_stmt *find_, *category_, *item_, *number_, *sale_, *saleItem_, *update_, *stamp_;
};

void VisitedMove(const std::string& folder) {
  const std::string ours = folder + "/board", rawFolder = folder + "/board_raw";
  CKovaDBSys db;
  for (const std::string& each : {rawFolder, ours}) {
    Check(KovaCreateDatabase(each.c_str()) == 0 && db.OpenDB(each.c_str()) == 0, "create");
    PutFees(db);
  }
  RawDatabase raw(rawFolder + "/kova.db");
  RawMove rawMove(raw);
  const foundation::SettingsSnapshot settings("[GLOBAL]\r\nConsumptionTax=1\r\n");
  const std::tm now{};
  Compare(
      "board: a visited move with its sale", "<= 1.5", kRounds, kMoves,
      [&](int round) {
        for (int i = 0; i < kMoves; ++i) {
          const std::string key = Number("%012d", round * kMoves + i);
          Check(visitflow::MoveReservation(&db, settings, key, "", BoardButton::kBeforeToNext, kStages, now)
                        .outcome == visitflow::MoveOutcome::kDone,
                "move");
        }
      },
      [&](int round) {
        for (int i = 0; i < kMoves; ++i) rawMove.Do(round * kMoves + i);
      });
}

int Main(const std::string& practice, const std::string& folder) {
  {
    CKovaDBSys db;
    Check(db.OpenDB(practice.c_str()) == 0, "OpenDB");
    TakeDayBack(db);  // of a run that was broken off
    PutDay(db, PickPatients(db));
    RawDatabase raw(practice + "/kova.db");
    ReadADay(db, raw);
    IdleTick(db, raw);
    TakeDayBack(db);
  }
  VisitedMove(folder);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 3) return kova::bench::Main(argv[1], argv[2]);
  std::fprintf(stderr, "usage: visitflow_bench PRACTICE FOLDER\n");
  return 2;
}
