#include "reservations/finished_date.h"

#include <string>

namespace kova::reservations {
namespace {

using store::GetText;
using store::PutText;
using store::Result;

constexpr int kByPatientAndDate = 1;  // key of the reservations
constexpr int kCancelled = 2;         // this status and those above are no visits
constexpr std::string_view kAccounted = "01";
constexpr std::size_t kDateLength = 8;

constexpr int Code(Result result) { return static_cast<int>(result); }

bool IsFinishedVisit(const tagRESERVATION& reservation) {
  return reservation.visited != 0 && reservation.status < kCancelled &&
         GetText(reservation.stageCode) == kAccounted;
}

/// The day of the patient's last finished visit; empty without one. Gives the record store's result.
int FindLastFinished(CKovaDBSys* db, std::string_view patientCode, std::string& date) {
  date.clear();
  CReservationDB table(nullptr, 0);
  int result = table.SetAssociatedDB(db);
  if (result == 0) result = table.SetKey(kByPatientAndDate);
  if (result != 0) return result;
  char patient[sizeof table.record.patientCode]{};
  PutText(patient, patientCode);
  table.SetKeyBuffer(patient, sizeof patient);
  for (result = table.GetLEEQ(); result == 0 && GetText(table.record.patientCode) == patientCode;
       result = table.GetPREV()) {
    if (!IsFinishedVisit(table.record)) continue;
    date = GetText(table.record.reservationDate);
    return 0;
  }
  return result == Code(Result::kEndOfTable) ? 0 : result;
}

int Store(CKovaDBSys* db, std::string_view patientCode, std::string_view date) {
  CPatientDB table(nullptr, 0);
  int result = table.SetAssociatedDB(db);
  if (result == 0) result = table.GetPatient1Data(std::string(patientCode).c_str());
  if (result != 0 || GetText(table.record.finishedDate) == date) return result;
  PutText(table.record.finishedDate, date);
  return table.Update();
}

}  // namespace

int ResetFinishedDate(CKovaDBSys* db, std::string_view patientCode) {
  std::string date;
  const int result = FindLastFinished(db, patientCode, date);
  return result != 0 ? result : Store(db, patientCode, date);
}

int PutFinishedDate(CKovaDBSys* db, std::string_view patientCode, std::string_view date) {
  if (date.size() != kDateLength || date.find_first_not_of("0123456789") != std::string_view::npos)
    return Code(Result::kBadArgument);
  return Store(db, patientCode, date);
}

}  // namespace kova::reservations
