// What the board reads of the record store.

#include <algorithm>
#include <cstring>
#include <utility>

#include "foundation/number_text.h"
#include "visitflow/board.h"

namespace kova::visitflow {
namespace {

using store::GetText;
using store::Result;

constexpr std::string_view kStageClass = "5";
constexpr std::string_view kRetired = "__";
constexpr int kByClassAndOrder = 1;  // key of the categories
constexpr int kByDateAndTime = 6;    // key of the reservations
constexpr int kCancelled = 2;        // this status and those above are not on the board

constexpr int Code(Result result) { return static_cast<int>(result); }

/// Positions a bound table at the first record whose key begins with the field's text `value`, for a walk of those.
template <std::size_t Width>
int GoTo(CBaseDBCall& table, int keyNumber, std::string_view value) {
  char field[Width]{};
  std::memcpy(field, value.data(), std::min(value.size(), Width));
  const int chosen = table.SetKey(keyNumber);
  if (chosen != 0) return chosen;
  table.SetKeyBuffer(field, Width);
  table.SetWalkEnd(field, Width);
  return table.GetGREQ();
}

int OnlyFailures(int result) { return result == Code(Result::kEndOfTable) ? 0 : result; }

/// Adds the reservation's row; nothing for a patient that does not exist.
int AddRow(CPatientDB& patients, const tagRESERVATION& reservation, std::vector<DayRow>& rows) {
  const std::string code(GetText(reservation.patientCode));
  const int result = patients.GetPatient1Data(code.c_str());
  if (result != 0) return result == Code(Result::kNotFound) ? 0 : result;
  const std::string_view name = GetText(patients.record.name);
  DayRow& row = rows.emplace_back();
  row.reservation = reservation;
  row.caseNumber = GetText(patients.record.caseNumber);
  row.patientName = name.empty() ? GetText(patients.record.otherName) : name;
  return 0;
}

int ReadRows(CKovaDBSys* db, std::string_view date, std::vector<DayRow>& rows) {
  CKovaReads reads(db);
  CReservationDB reservations(nullptr, 0);
  CPatientDB patients(nullptr, 0);
  int result = reservations.SetAssociatedDB(db);
  if (result == 0) result = patients.SetAssociatedDB(db);
  if (result == 0) result = patients.SetFields("name otherName caseNumber");
  if (result == 0)
    result = GoTo<sizeof reservations.record.reservationDate>(reservations, kByDateAndTime, date);
  std::vector<tagRESERVATION> shown;
  std::vector<std::string> codes;
  for (; result == 0; result = reservations.GetNEXT()) {
    if (reservations.record.status >= kCancelled) continue;
    shown.push_back(reservations.record);
    codes.emplace_back(GetText(reservations.record.patientCode));
  }
  result = OnlyFailures(result);
  reads.EndWithNext();
  if (result == 0) result = patients.ReadAhead(codes);
  for (const tagRESERVATION& each : shown) {
    if (result == 0) result = AddRow(patients, each, rows);
  }
  return result;
}

}  // namespace

std::vector<Stage> ReadStages(CKovaDBSys* db) {
  const CKovaReads reads(db);
  CCategoryDB table(nullptr, 0);
  std::vector<Stage> stages;
  int result = table.SetAssociatedDB(db);
  if (result == 0) result = GoTo<sizeof table.record.classCode>(table, kByClassAndOrder, kStageClass);
  for (; result == 0; result = table.GetNEXT()) {
    if (GetText(table.record.marker).starts_with(kRetired)) continue;
    stages.push_back(
        {foundation::ReadInteger(GetText(table.record.code)), std::string(GetText(table.record.name))});
  }
  return OnlyFailures(result) == 0 ? stages : std::vector<Stage>();
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
