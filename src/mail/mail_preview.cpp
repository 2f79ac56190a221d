#include "mail/mail_preview.h"

#include <cstdio>

#include "foundation/number_text.h"
#include "foundation/text_tools.h"
#include "platform/recordstore/table.h"
#include "records/patients.h"
#include "records/reservations.h"

namespace kova::mail {
namespace {

using store::GetText;
using store::PutText;


}  // namespace

int ReservationsOfDay(CKovaDBSys* db, std::string_view date, std::vector<PreviewRow>& rows) {
  rows.clear();
  const CKovaReads reads(db);
  std::vector<tagRESERVATION> reservations;
  int result = records::ReadReservationsOfDay(db, date, reservations);
  store::On<CPatientDB> patients(db);
  for (const tagRESERVATION& reservation : reservations) {
    const int found = patients.GetPatient1Data(std::string(GetText(reservation.patientCode)).c_str());
    rows.push_back({reservation, std::string(found == 0 ? records::ShownName(patients.record) : std::string_view())});
    if (result == 0) result = store::FoundOrNone(found);
  }
  if (result != 0) rows.clear();
  return result;
}

int PreviewFor(const MailTemplate& mailTemplate, TemplateRole role, CKovaDBSys* db, const tagRESERVATION& reservation,
               const std::tm& now, FilledMail& mail) {
  const CKovaReads reads(db);
  store::On<CPatientDB> patient(db);
  store::On<CPatientDB2> contact(db);
  const std::string code(GetText(reservation.patientCode));
  int result = store::FoundOrNone(patient.GetPatient1Data(code.c_str()));
  if (result == 0) result = store::FoundOrNone(contact.GetPatient2Data(code.c_str()));
  mail = result == 0 ? FillMail(mailTemplate, reservation, patient.record, contact.record, now, FallbackOf(role))
                     : FilledMail();
  return result;
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
