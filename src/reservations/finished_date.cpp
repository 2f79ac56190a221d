#include "reservations/finished_date.h"

#include <string>

#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"
#include "records/reservations.h"

namespace kova::reservations {
namespace {

using store::GetText;
using store::PutText;
using store::Result;

constexpr std::size_t kDateLength = 8;

constexpr int Code(Result result) { return static_cast<int>(result); }

bool IsFinishedVisit(const tagRESERVATION& reservation) {
  return reservation.visited != 0 && records::TakesPlace(reservation) &&
         GetText(reservation.stageCode) == records::kAccounted;
}

/// The day of the patient's last finished visit; empty without one. Gives the record store's result.
int FindLastFinished(CKovaDBSys* db, std::string_view patientCode, std::string& date) {
  date.clear();
  store::On<CReservationDB> table(db);
  return store::WalkBack(table, CReservationDB::Key::ByPatient, {patientCode}, [&](const tagRESERVATION& reservation) {
    if (!IsFinishedVisit(reservation)) return true;
    date = GetText(reservation.reservationDate);
    return false;
  });
}

int Store(CKovaDBSys* db, std::string_view patientCode, std::string_view date) {
  store::On<CPatientDB> table(db);
  const int result = table.GetPatient1Data(std::string(patientCode).c_str());
  if (result != 0 || GetText(table.record.finishedDate) == date) return result;
  PutText(table.record.finishedDate, date);
  return table.UpdateIfUnchanged();
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
