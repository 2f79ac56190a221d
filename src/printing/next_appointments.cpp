#include "printing/next_appointments.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "foundation/text_tools.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"
#include "platform/toollib/tools.h"
#include "printing/ole_date.h"
#include "records/masters.h"
#include "records/reservations.h"

namespace kova::printing {
namespace {

using store::GetText;
using store::PutText;

std::string Today(const std::tm& now) {
  char text[48];
  std::snprintf(text, sizeof text, "%04d%02d%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
  return text;
}

std::string TimeOf(const std::tm& now) {
  char text[32];
  std::snprintf(text, sizeof text, "%02d%02d", now.tm_hour, now.tm_min);
  return text;
}

/// "09:30"; what is no time of four digits as it is.
std::string ShownTime(std::string_view time) {
  std::string shown(time);
  return time.size() == 4 && foundation::IsNumeric(time) ? shown.insert(2, ":") : shown;
}

}  // namespace

bool IsToCome(const tagRESERVATION& reservation, const std::tm& now) {
  if (!records::TakesPlace(reservation) || reservation.visited != 0) return false;
  const std::string_view date = GetText(reservation.reservationDate);
  const std::string today = Today(now);
  return date > today || (date == today && GetText(reservation.startTime) > TimeOf(now));
}

_NEXTCARD CardOf(const tagRESERVATION& reservation) {
  _NEXTCARD card{};
  const std::string_view date = GetText(reservation.reservationDate);
  PutText(card.date, CTools::MakeDate(date));
  PutText(card.weekday, foundation::GetDayOfWeekString(WeekdayOf(date)));
  PutText(card.start, ShownTime(GetText(reservation.startTime)));
  PutText(card.end, ShownTime(GetText(reservation.endTime)));
  return card;
}

int LoadNextAppointments(CKovaDBSys* db, std::string_view patientCode, const std::tm& now, MasterNames& names,
                         _NEXTCARDDATA& card) {
  card = {};
  const CKovaReads reads(db);
  store::On<CReservationDB> table(db);
  int result = table.SetKey(CReservationDB::Key::ByPatient);
  if (result != 0) return -1;
  char key[sizeof table.record.patientCode + sizeof table.record.reservationDate]{};
  patientCode.copy(key, sizeof table.record.patientCode);
  Today(now).copy(key + sizeof table.record.patientCode, sizeof table.record.reservationDate);
  table.SetKeyBuffer(key, sizeof key);
  std::size_t count = 0;
  for (result = table.GetGREQ();
       result == 0 && GetText(table.record.patientCode) == patientCode && count < _NEXTCARDDATA::kCount;
       result = table.GetNEXT()) {
    const tagRESERVATION& reservation = table.record;
    if (!IsToCome(reservation, now)) continue;
    _NEXTCARD& next = card.appointments[count++] = CardOf(reservation);
    PutText(next.type, names.Category(records::kReservationTypes, GetText(reservation.typeCode)));
    PutText(next.unit, names.Category(records::kUnits, GetText(reservation.unitCode)));
    PutText(next.doctor, names.Doctor(GetText(reservation.doctorCode)));
    PutText(next.reason, names.Reason(GetText(reservation.reasonCode)));
  }
  if (store::WalkOutcome(result) == 0 && names.Failure() == 0) return static_cast<int>(count);
  card = {};
  return -1;
}

}  // namespace kova::printing
