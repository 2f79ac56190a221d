#include "mail/mail_preview.h"

#include <cstdio>

#include "foundation/number_text.h"
#include "foundation/text_tools.h"

namespace kova::mail {
namespace {

using store::GetText;
using store::PutText;

constexpr int kByDateAndTime = 6;  // key of the reservations
template <typename Table>
bool ReadInto(CKovaDBSys* db, const tagRESERVATION& reservation, Table& table) {
  if (table.SetAssociatedDB(db) == 0 && ReadPatientOf(reservation, table)) return true;
  table.record = {};
  return false;
}

}  // namespace

std::vector<PreviewRow> ReservationsOfDay(CKovaDBSys* db, std::string_view date) {
  std::vector<PreviewRow> rows;
  CReservationDB table(nullptr, 0);
  CPatientDB patient(nullptr, 0);
  if (db == nullptr) return rows;
  const CKovaReads reads(db);
  if (table.SetAssociatedDB(db) != 0 || table.SetKey(kByDateAndTime) != 0) return rows;
  table.SetKeyBuffer(date.data(), static_cast<unsigned long>(date.size()));
  for (int result = table.GetGREQ(); result == 0 && table.IsEOF() == 0; result = table.GetNEXT()) {
    if (GetText(table.record.reservationDate) != date) break;
    if (table.record.status < 2) rows.push_back({table.record, {}});
  }
  for (PreviewRow& row : rows) {
    if (ReadInto(db, row.reservation, patient)) row.patientName = GetText(patient.record.name);
  }
  return rows;
}

FilledMail PreviewFor(const MailTemplate& mailTemplate, TemplateRole role, CKovaDBSys* db,
                      const tagRESERVATION& reservation, const std::tm& now) {
  CPatientDB patient(nullptr, 0);
  CPatientDB2 contact(nullptr, 0);
  (void)ReadInto(db, reservation, patient);
  (void)ReadInto(db, reservation, contact);
  return FillMail(mailTemplate, reservation, patient.record, contact.record, now, FallbackOf(role));
}

FilledMail PreviewForExample(const MailTemplate& mailTemplate, TemplateRole role, const std::tm& now) {
  char today[16];
  std::strftime(today, sizeof today, "%Y%m%d", &now);
  tagRESERVATION reservation{};
  PutText(reservation.patientCode, "00012345");
  PutText(reservation.reservationDate, DayAfter(today, 7));
  PutText(reservation.startTime, "1030");
  PutText(reservation.earlierDates[0], DayAfter(today, 3));
  PutText(reservation.earlierTimes[0], "0900");
  tagPATIENTDB patient{};
  PutText(patient.patientCode, "00012345");
  PutText(patient.name, "見本　花子");
  PutText(patient.caseNumber, "A-0123");
  PutText(patient.guardianName, "見本　太郎");
  tagPATIENTDB2 contact{};
  PutText(contact.mailAddress1, "hanako@example.jp");
  contact.mailPermission = 1;
  return FillMail(mailTemplate, reservation, patient, contact, now, FallbackOf(role));
}

std::string DayAfter(std::string_view date, int days) {
  if (date.size() != 8 || !foundation::IsNumeric(date)) return std::string(date);
  std::tm day{};
  day.tm_year = foundation::ReadInteger(date.substr(0, 4)) - 1900;
  day.tm_mon = foundation::ReadInteger(date.substr(4, 2)) - 1;
  day.tm_mday = foundation::ReadInteger(date.substr(6, 2)) + days;
  day.tm_hour = 12;  // clear of any change of the clocks
  if (std::mktime(&day) == -1) return std::string(date);
  char text[16];
  std::strftime(text, sizeof text, "%Y%m%d", &day);
  return text;
}

}  // namespace kova::mail
