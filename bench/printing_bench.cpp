// Receipts and patients' forms against writing the same bytes by hand. printing_bench FOLDER: an empty folder
// of its own on the disk to measure.

#include <afxwin.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "bench/raw_table.h"
#include "entry/kova_sub_tools.h"
#include "platform/os/files.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "printing/testing/receipt_builder.h"

namespace kova::bench {
namespace {

using store::PutText;
using store::On;

constexpr int kPatients = 1000;
constexpr int kAppointments = 4;

std::string Number(const char* format, int number) {
  char text[32];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

/// The bytes under another name, flushed, renamed, and the renaming flushed.
void WriteByHand(const std::string& folder, const std::string& name, const std::string& bytes) {
  const std::string path = folder + "/" + name;
  const std::string temporary = path + ".new";
  const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  Check(file >= 0 && ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
        "write");
  Check(::fsync(file) == 0 && ::close(file) == 0, "fsync");
  Check(std::rename(temporary.c_str(), path.c_str()) == 0, "rename");
  const int entries = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  Check(entries >= 0 && ::fsync(entries) == 0 && ::close(entries) == 0, "fsync of the folder");
}

std::string Read(const std::string& path) {
  std::string bytes;
  Check(os::RealFiles().Read(path, 1 << 20, bytes) == os::FileOutcome::kOk, "Read");
  return bytes;
}

void PrintReceipt(const std::string& folder) {
  printing::testing::ReceiptBuilder receipt;
  for (int i = 0; i < 30; ++i) {
    receipt.Points("insured treatment", Number("%03d", 1 + i % 20), 100 + i, 300);
    receipt.Yen("a self-paid item", 2, 1000 + i, TMPTAX_ON_TOP, i % 3 == 0);
  }
  _TMPRECEIPT given = receipt.Get();
  const std::string base = folder + "\\receipt";
  const auto print = [&](int) {
    Check(CKovaSubTools::CreatePrintTmp(nullptr, base.c_str(), 0, &given) == 0, "CreatePrintTmp");
  };
  print(0);
  const std::string bytes = Read(base + ".tmp");
  Compare("receipt of 60 lines", "<= 2", 201, 1, print, [&](int) { WriteByHand(folder, "baseline", bytes); });
}

template <typename Table>
void Insert(CKovaDBSys& db, const decltype(Table::record)& record) {
  Table table(nullptr, 0);
  Check(table.SetAssociatedDB(&db) == 0, "bind");
  table.record = record;
  Check(table.Insert() == 0, "insert");
}

/// A code and a name in a master table that lists by code.
template <typename Table>
void InsertMaster(CKovaDBSys& db, const char* code) {
  typename std::remove_reference<decltype(Table::record)>::type record{};
  PutText(record.code, code);
  PutText(record.name, "name");
  Insert<Table>(db, record);
}

void PutMasters(CKovaDBSys& db) {
  InsertMaster<CDoctorDB>(db, "01");
  InsertMaster<CResReasonDB>(db, "01");
  for (const char* classCode : {"0", "1", "3"}) {
    tagCATEGORY category{};
    PutText(category.classCode, classCode);
    PutText(category.code, "01");
    PutText(category.name, "name");
    Insert<CCategoryDB>(db, category);
  }
  for (int table = 0; table < 10; ++table) {
    tagCUSTOMTBL entry{};
    PutText(entry.tableId, Number("%02d", table));
    PutText(entry.code, "01");
    PutText(entry.name, "name");
    Insert<CCustomTblDB>(db, entry);
  }
}

void PutPatients(CKovaDBSys& db) {
  On<CPatientDB> patients(db);
  On<CReservationDB> reservations(db);
  Check(patients.BeginTran() == 0, "begin");
  tagPATIENTDB& patient = patients.record;
  PutText(patient.name, "name of a patient");
  PutText(patient.doctorCode, "01");
  PutText(patient.insuranceTypeCode, "01");
  for (auto& item : patient.extraItems) PutText(item, "01");
  tagRESERVATION& reservation = reservations.record;
  for (char* code :
       {reservation.typeCode, reservation.unitCode, reservation.doctorCode, reservation.reasonCode})
    std::snprintf(code, 3, "01");
  PutText(reservation.startTime, "0900");
  for (int i = 0; i < kPatients; ++i) {
    PutText(patient.patientCode, Number("%010d", i));
    Check(patients.Insert() == 0, "insert");
    PutText(reservation.patientCode, Number("%010d", i));
    for (int next = 0; next < kAppointments; ++next) {
      PutText(reservation.reservationNumber, Number("%012d", i * kAppointments + next));
      PutText(reservation.reservationDate, Number("9999120%d", next + 1));
      Check(reservations.Insert() == 0, "insert");
    }
  }
  Check(patients.EndTran() == 0, "end");
}

/// The records of one patient's form, read by hand: the patient, the names behind its codes, its appointments
/// and theirs.
class ByHand {
 public:
  explicit ByHand(const std::string& file) : raw_(file) {
    patient_ = Select("patient", "key0 = ?");
    doctor_ = Select("doctor", "key0 = ?");
    category_ = Select("category", "key0 = ?");
    reason_ = Select("resreason", "key0 = ?");
    entry_ = Select("customtbl", "key0 = ?");
    walk_ = Select("reservation", "key1 >= ? ORDER BY key1, id");
  }

  ~ByHand() {
    for (sqlite3_stmt* each : {patient_, doctor_, category_, reason_, entry_, walk_}) sqlite3_finalize(each);
  }
  ByHand(const ByHand&) = delete;
  ByHand& operator=(const ByHand&) = delete;

  void ReadPatient(const tagPATIENTDB& key) {
    raw_.Run("BEGIN");
    Row(patient_, "patient", Key(key.patientCode, sizeof key.patientCode));
    Row(doctor_, "doctor", Code("01"));
    Row(category_, "category", std::string("3\0", 2) + Code("01"));
    for (int table = 0; table < 10; ++table)
      Row(entry_, "customtbl", Code(Number("%02d", table).c_str()) + std::string("01\0\0\0", 5));
    Walk(Key(key.patientCode, sizeof key.patientCode));
    raw_.Run("COMMIT");
  }

 private:
  static std::string Key(const char* field, std::size_t width) { return std::string(field, width); }
  static std::string Code(const char* code) { return std::string(code, 3); }
  sqlite3_stmt* Select(const char* table, const char* where) {
    return raw_.Prepare("SELECT " + Columns(*store::FindTable(table)) + " FROM " + table + " WHERE " + where);
  }
  void Row(sqlite3_stmt* select, const char* table, std::string key) {
    key.resize(key.find_last_not_of('\0') + 1);  // as keys are stored
    sqlite3_bind_blob(select, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
    Check(sqlite3_step(select) == SQLITE_ROW, table);
    ReadRow(select, *store::FindTable(table), record_);
    sqlite3_reset(select);
  }
  void Walk(const std::string& key) {
    sqlite3_bind_blob(walk_, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
    for (int i = 0; i < kAppointments && sqlite3_step(walk_) == SQLITE_ROW; ++i) {
      ReadRow(walk_, *store::FindTable("reservation"), record_);
      Row(category_, "category", std::string("0\0", 2) + Code("01"));
      Row(category_, "category", std::string("1\0", 2) + Code("01"));
      Row(doctor_, "doctor", Code("01"));
      Row(reason_, "resreason", Code("01"));
    }
    sqlite3_reset(walk_);
  }

  RawDatabase raw_;
  sqlite3_stmt *patient_, *doctor_, *category_, *reason_, *entry_, *walk_;
  char record_[4096];
};

void PrintPatients(const std::string& practice, const std::string& folder) {
  CKovaDBSys db;
  Check(KovaCreateDatabase(practice.c_str()) == 0 && db.OpenDB(practice.c_str()) == 0, "OpenDB");
  On<CPatientDB> patients(db);
  Check(patients.BeginTran() == 0, "begin");
  PutMasters(db);
  Check(patients.EndTran() == 0, "end");
  PutPatients(db);
  const auto path = [&](int i) { return folder + "\\p" + std::to_string(i); };
  const auto forEach = [&](auto&& use) {
    for (int i = 0; i < kPatients; ++i) {
      Check(patients.GetPatient1Data(Number("%010d", i).c_str()) == 0, "GetPatient1Data");
      use(i, patients.record);
    }
  };
  const auto exported = [&](int) {
    forEach([&](int i, tagPATIENTDB& patient) {
      Check(CKovaSubTools::CreatePrintFile(&patient, CString(path(i).c_str())) == 0, "CreatePrintFile");
    });
  };
  exported(0);
  std::vector<std::string> bytes;
  for (int i = 0; i < kPatients; ++i) bytes.push_back(Read(path(i)));
  Check(bytes[0].find("Data76=") != std::string::npos && bytes[0].find("9999/12/04") != std::string::npos,
        "form");
  ByHand byHand(practice + "/kova.db");
  const auto baseline = [&](int) {
    tagPATIENTDB key{};
    for (int i = 0; i < kPatients; ++i) {
      PutText(key.patientCode, Number("%010d", i));
      byHand.ReadPatient(key);
      WriteByHand(folder, "baseline" + std::to_string(i), bytes[static_cast<std::size_t>(i)]);
    }
  };
  const auto onTheHostsConnection = [&](int) {
    forEach([&](int i, tagPATIENTDB& patient) {
      Check(CKovaSubTools::CreatePrintFile(&db, &patient, CString(path(i).c_str())) == 0, "CreatePrintFile");
    });
  };
  Compare("1,000 patient files, the host's connection", "<= 2", 5, kPatients, onTheHostsConnection, baseline);
  Compare("the same, a connection opened for each", "-", 5, kPatients, exported, baseline);
}

int Main(const std::string& folder) {
  CWinApp app;
  const std::string practice = folder + "/printing_practice";
  const std::string prints = folder + "/prints";
  std::filesystem::create_directories(prints);
  const std::string profile = folder + "/printing.ini";
  app.m_pszProfileName = profile.c_str();
  std::ofstream(profile) << "[GLOBAL]\r\nDATABASE=" << practice << "\r\n";
  std::filesystem::create_directories(practice);
  std::ofstream(practice + "/GLOBALSETTING.ini")
      << "[GLOBAL]\r\nClinicName=clinic\r\n[MENTE]\r\nTaxCount=1\r\nTaxFrm01=20191001\r\nTaxTo01=99991231\r\n"
         "TaxRate01=10\r\nTaxRate201=8\r\n";
  PrintReceipt(prints);
  PrintPatients(practice, prints);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 2) return kova::bench::Main(argv[1]);
  std::fprintf(stderr, "usage: printing_bench FOLDER\n");
  return 2;
}
