// What the board reads of the record store.

#include "foundation/number_text.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"
#include "records/masters.h"
#include "records/patients.h"
#include "records/reservations.h"
#include "visitflow/board.h"

namespace kova::visitflow {
namespace {

using store::GetText;
using store::Result;

constexpr int Code(Result result) { return static_cast<int>(result); }

/// Adds the reservation's row; nothing for a patient that does not exist.
int AddRow(CPatientDB& patients, const tagRESERVATION& reservation, std::vector<DayRow>& rows) {
  const std::string code(GetText(reservation.patientCode));
  const int result = patients.GetPatient1Data(code.c_str());
  if (result != 0) return result == Code(Result::kNotFound) ? 0 : result;
  DayRow& row = rows.emplace_back();
  row.reservation = reservation;
  row.caseNumber = GetText(patients.record.caseNumber);
  row.patientName = records::ShownName(patients.record);
  return 0;
}

int ReadRows(CKovaDBSys* db, std::string_view date, std::vector<DayRow>& rows) {
  CKovaReads reads(db);
  std::vector<tagRESERVATION> shown;
  int result = records::ReadReservationsOfDay(db, date, shown);
  std::vector<std::string> codes;
  for (const tagRESERVATION& each : shown) codes.emplace_back(GetText(each.patientCode));
  store::On<CPatientDB> patients(db);
  if (result == 0) result = patients.SetFields("name otherName caseNumber");
  reads.EndWithNext();
  if (result == 0) result = patients.ReadAhead(codes);
  for (const tagRESERVATION& each : shown) {
    if (result == 0) result = AddRow(patients, each, rows);
  }
  return result;
}

}  // namespace

StagesRead ReadStages(CKovaDBSys* db) {
  const CKovaReads reads(db);
  store::On<CCategoryDB> table(db);
  StagesRead read;
  read.result =
      store::Walk(table, CCategoryDB::Key::InListOrder, {records::kStages}, [&](const tagCATEGORY& stage) {
        if (records::IsRetired(GetText(stage.marker))) return;
        read.stages.push_back({foundation::ReadInteger(GetText(stage.code)), std::string(GetText(stage.name))});
      });
  return read;
}

DayRead ReadDay(CKovaDBSys* db, std::string_view date) {
  DayRead day;
  day.result = ReadRows(db, date, day.rows);
  return day;
}

bool ReadBoardStamp(CKovaDBSys* db, std::string& stamp) {
  if (db == nullptr) return false;
  long long number = 0;
  if (db->GetChangeStamp({store::TableId::Reservation, store::TableId::Patient}, number) != 0) return false;
  // Another database may have been opened on the connection, whose stamps are its own.
  stamp = std::to_string(db->GetGeneration()) + ":" + std::to_string(number);
  return true;
}

}  // namespace kova::visitflow
