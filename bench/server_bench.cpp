// The record store on a database server against the same prepared statements through plain ODBC, whose values stay as they
// arrive. server_bench FOLDER: an empty folder. The server is the one that tests/recordstore/store_server.h names; the database of the
// run stays on it.

#include <random>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "bench/raw_odbc.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "visitflow/board.h"

namespace kova::bench {
namespace {

using store::GetText;
using store::PutText;
using store::On;

constexpr int kPatients = 5000;
constexpr int kReservations = 100;
constexpr int kReads = 1000;
constexpr int kRounds = 11;
constexpr const char* kDay = "21000104";
constexpr const char* kDayBehind = "21000105";

std::string Number(const char* format, int number) {
  char text[16];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

std::string Label(const char* what) { return testing::Environment("KOVA_SERVER_KIND") + ": " + what; }

/// The blocks of a walk, as the cursor asks for them: the one at which it is positioned, the next, and how they grow. The
/// round trips of both sides are compared, so that a change there is noticed here.
struct Blocks {
  std::size_t position, next, largest;
};
constexpr Blocks kBlocks = {1, 64, 4096};

void PutPractice(CKovaDBSys& db) {
  On<CPatientDB> patients(db);
  On<CReservationDB> reservations(db);
  Check(patients.BeginTran() == 0, "begin");
  for (int i = 0; i < kPatients; ++i) {
    tagPATIENTDB& record = patients.record;
    PutText(record.patientCode, Number("%010d", i));
    PutText(record.name, i % 3 == 0 ? "山田 太郎" : i % 3 == 1 ? "佐藤 花子" : "五十嵐 美千代");
    PutText(record.reading, i % 2 == 0 ? "ﾔﾏﾀﾞ ﾀﾛｳ" : "ｻﾄｳ ﾊﾅｺ");
    PutText(record.caseNumber, Number("%d", i));
    PutText(record.birthDate, "19700102");
    PutText(record.postalCode, "100-0001");
    PutText(record.address, "東京都千代田区千代田１丁目１番１号　皇居前ハイツ２０３");
    PutText(record.phone, "03-1234-5678");
    PutText(record.firstVisitDate, "20200401");
    Check(patients.Insert() == 0, "insert");
  }
  for (int i = 0; i < 10 * kReservations; ++i) {
    tagRESERVATION& record = reservations.record;
    PutText(record.reservationNumber, Number("%012d", i));
    PutText(record.reservationDate, i % 10 == 0 ? kDay : Number("2099%04d", i % 300).c_str());
    PutText(record.startTime, Number("%04d", 900 + i % 900));
    PutText(record.patientCode, Number("%010d", i * 7 % kPatients));
    PutText(record.stageCode, i % 3 == 0 ? "" : i % 3 == 1 ? "20" : "01");
    PutText(record.memo, "前回の続き。レントゲン撮影あり。");
    Check(reservations.Insert() == 0, "insert");
  }
  Check(patients.EndTran() == 0, "end");
}

std::string Table(const RawServer& raw, const char* name) { return " FROM " + raw.Name(name); }

std::uint64_t RoundTrips(CKovaDBSys& db) { return db.GetEngine()->RoundTrips(); }

void PointReads(CKovaDBSys& db, RawServer& raw) {
  const store::TableDef& table = *store::FindTable("patient");
  RawQuery query(raw,
                 "SELECT " + raw.Columns(table) + Table(raw, "patient") + " WHERE key0 >= ? ORDER BY key0 LIMIT 1", "k",
                 1);
  query.AddRecord(table);
  query.Bind();
  On<CPatientDB> patients(db);
  std::mt19937 random(7);
  std::vector<std::string> codes;
  for (int i = 0; i < kReads; ++i) codes.push_back(Number("%010d", static_cast<int>(random() % kPatients)));
  const auto ours = [&] {
    for (const std::string& code : codes) Check(patients.GetPatient1Data(code.c_str()) == 0, "read");
  };
  const auto baseline = [&] {
    for (const std::string& code : codes) {
      query.Set(0, code);
      Check(query.Run() == 1, "raw read");
    }
  };
  Compare(
      Label("a patient by ID").c_str(), "<= 1.3", kRounds, kReads, [&](int) { ours(); }, [&](int) { baseline(); });
  Compare(
      Label("the same, 1,000 in one view").c_str(), "<= 1.3", kRounds, kReads,
      [&](int) {
        const CKovaReads reads(&db);
        ours();
      },
      [&](int) {
        raw.BeginReads();
        baseline();
        raw.EndReads();
      });
}

void Walk(CKovaDBSys& db, RawServer& raw) {
  const store::TableDef& table = *store::FindTable("patient");
  const std::string select = "SELECT " + raw.Columns(table) + Table(raw, "patient");
  std::vector<std::unique_ptr<RawQuery>> next;
  std::vector<std::size_t> limits;
  for (std::size_t limit = kBlocks.next;; limit = std::min(limit * 4, kBlocks.largest)) {
    limits.push_back(limit);
    next.push_back(std::make_unique<RawQuery>(
        raw, select + " WHERE key0 > ? ORDER BY key0 LIMIT " + std::to_string(limit), "k", std::min<std::size_t>(limit, 64)));
    next.back()->AddRecord(table);
    next.back()->Bind();
    if (limit == kBlocks.largest) break;
  }
  RawQuery first(raw, select + " ORDER BY key0 LIMIT " + std::to_string(kBlocks.position), "", kBlocks.position);
  first.AddRecord(table);
  first.Bind();
  On<CPatientDB> patients(db);
  std::uint64_t oursTrips = 0, rawTrips = 0;
  Compare(
      Label("walk of 5,000 patients, one of them").c_str(), "<= 1.3", kRounds, kPatients,
      [&](int) {
        const std::uint64_t before = RoundTrips(db);
        int count = 0;
        for (int r = patients.GetFIRST(); r == 0; r = patients.GetNEXT()) ++count;
        Check(count == kPatients, "walk");
        oursTrips = RoundTrips(db) - before;
      },
      [&](int) {
        rawTrips = 1;
        std::size_t count = first.Run(), block = 0, rows = 0;
        do {
          next[block]->Set(0, Number("%010d", static_cast<int>(count) - 1));
          rows = next[block]->Run();
          count += rows;
          ++rawTrips;
          if (rows < limits[block]) break;
          if (block + 1 < next.size()) ++block;
        } while (rows > 0);
        Check(count == kPatients, "raw walk");
      });
  if (oursTrips != rawTrips)
    std::printf("  not the same statements any more: %d round trips against %d\n", static_cast<int>(oursTrips),
                static_cast<int>(rawTrips));
}

void Board(CKovaDBSys& db, RawServer& raw) {
  const store::TableDef& table = *store::FindTable("reservation");
  const std::string code = "r." + raw.Name("patientCode");
  RawQuery join(raw,
                "SELECT " + raw.Columns(table, "r.") + ", p." + raw.Name("caseNumber") + ", p." + raw.Name("name") +
                    ", p." + raw.Name("otherName") + Table(raw, "reservation") + " r JOIN " + raw.Name("patient") +
                    " p ON p.key0 = " +
                    (raw.IsMariaDb() ? "CAST(" + code + " AS BINARY)" : "convert_to(" + code + ", 'UTF8')") +
                    " WHERE r.key6 >= ? AND r.key6 < ? AND r.status < 2 ORDER BY r.key6, r.id",
                "kk", 64);
  join.AddRecord(table);
  const store::TableDef& patient = *store::FindTable("patient");
  for (const char* field : {"caseNumber", "name", "otherName"}) join.AddText(patient.FindField(field)->width);
  join.Bind();
  join.Set(0, kDay);
  join.Set(1, kDayBehind);
  Compare(
      Label("board: a day of 100 read").c_str(), "<= 2", kRounds, 10,
      [&](int) {
        for (int i = 0; i < 10; ++i)
          Check(visitflow::ReadDay(&db, kDay).rows.size() == static_cast<std::size_t>(kReservations), "rows");
      },
      [&](int) {
        for (int i = 0; i < 10; ++i) Check(join.Run() == static_cast<std::size_t>(kReservations), "raw rows");
      });
  const std::uint64_t before = RoundTrips(db);
  (void)visitflow::ReadDay(&db, kDay);
  std::printf("  %d round trips against 1\n", static_cast<int>(RoundTrips(db) - before));

  RawQuery stamps(raw, "SELECT stamp" + Table(raw, "change_stamp") + " WHERE " + raw.Name("tableName") +
                           " IN ('reservation', 'patient')",
                  "", 2);
  stamps.AddNumber();
  stamps.Bind();
  Compare(
      Label("board: an idle tick").c_str(), "<= 1.5", kRounds, kReads,
      [&](int) {
        std::string stamp;
        for (int i = 0; i < kReads; ++i) Check(visitflow::ReadBoardStamp(&db, stamp), "stamp");
      },
      [&](int) {
        for (int i = 0; i < kReads; ++i) Check(stamps.Run() == 2, "raw stamps");
      });
}

int Main(const std::string& folder) {
  Check(testing::OnServer(), "KOVA_SERVER_KIND: no server is named, which");
  const std::string database = testing::NewDatabaseName();
  testing::PutOnServer(folder, database);
  std::string problem;
  Check(KovaCreateDatabase(folder.c_str(), &problem) == 0, ("create: " + problem).c_str());
  CKovaDBSys db;
  Check(db.OpenDB(folder.c_str()) == 0, "OpenDB");
  PutPractice(db);
  RawServer raw(database);
  raw.Run(raw.IsMariaDb() ? "ANALYZE TABLE patient, reservation" : "ANALYZE");
  PointReads(db, raw);
  Walk(db, raw);
  Board(db, raw);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 2) return kova::bench::Main(argv[1]);
  std::fprintf(stderr, "usage: server_bench FOLDER\n");
  return 2;
}
