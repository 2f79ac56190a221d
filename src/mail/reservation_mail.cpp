#include "mail/reservation_mail.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "foundation/number_text.h"
#include "platform/recordstore/table.h"
#include "platform/text932/cp932.h"
#include "platform/toollib/tools.h"

namespace kova::mail {
namespace {

using store::GetText;

/// What the mails about a reservation differ in.
struct RoleMail {
  TemplateRole role;
  std::string_view question;  // shown with the addresses behind it
};

constexpr RoleMail kRoleMails[] = {
    {TemplateRole::kCome, "以下のアドレスに来院済みのメールを送信します。よろしいですか?\n\n"},
    {TemplateRole::kTreatmentFinished, "以下のアドレスに治療終了のメールを送信します。よろしいですか?\n\n"},
    {TemplateRole::kChangeConfirm, "以下のアドレスに予約変更の確認のメールを送信します。よろしいですか?\n\n"},
};

/// How the patient hears of a changed reservation: "EMail"/"CONTACT".
constexpr int kContactByMail = 0;
constexpr int kContactByDraft = 1;

// Two cuts of two characters, whatever is there.
std::string TimeText(std::string_view time) {
  return std::string(time.substr(0, 2)) + ":" +
         std::string(time.substr(std::min<std::size_t>(2, time.size()), 2));
}

std::string DateTimeText(const std::tm& now) {
  char text[80];
  std::snprintf(text, sizeof text, "%04d/%02d/%02d %02d:%02d", now.tm_year + 1900, now.tm_mon + 1,
                now.tm_mday, now.tm_hour, now.tm_min);
  return text;
}

template <std::size_t A, std::size_t B>
std::string FirstOf(const char (&first)[A], const char (&second)[B]) {
  return std::string(GetText(first).empty() ? GetText(second) : GetText(first));
}

std::string GuardianText(const tagPATIENTDB& patient, GuardianFallback fallback) {
  std::string name = FirstOf(patient.guardianName, patient.secondGuardianName);
  return name.empty() && fallback == GuardianFallback::kGeneralWord ? "保護者" : name;
}

void PutEarlier(const tagRESERVATION& reservation, std::string& date, std::string& time) {
  for (std::size_t i = std::size(reservation.earlierDates); i-- > 0;) {
    const std::string_view earlierDate = GetText(reservation.earlierDates[i]);
    if (earlierDate.empty()) continue;
    const std::string_view earlierTime = GetText(reservation.earlierTimes[i]);
    date = CTools::MakeDate(earlierDate);
    time = earlierTime.empty() ? "" : TimeText(earlierTime);
    return;
  }
}

bool IsConfirmed(const MailDesk& desk, const RoleMail& roleMail, std::string_view addresses) {
  if (desk.settings.GetInt("GLOBAL", "WatchConfirm", 0) == 0) return true;
  return desk.prompts.AskYesNo(std::string(roleMail.question) + text932::ReplaceAll(addresses, ",", "\n"));
}

int Send(const MailDesk& desk, const RoleMail& roleMail, CKovaDBSys* db, const tagRESERVATION& reservation) {
  const std::string chosen = ChosenTemplate(desk.settings, roleMail.role);
  if (chosen.empty()) return 0;
  const int contact = roleMail.role == TemplateRole::kChangeConfirm
                          ? desk.settings.GetInt(kMailSection, "CONTACT", kContactByMail)
                          : kContactByMail;
  if (contact != kContactByMail && contact != kContactByDraft) return 0;
  FilledMail filled;
  if (FillForReservation(desk.templates, foundation::ReadInteger(chosen), db, reservation, desk.now,
                         FallbackOf(roleMail.role), filled) != FillOutcome::kFilled)
    return 0;
  if (filled.to.empty() || !IsConfirmed(desk, roleMail, filled.to)) return 0;
  const OutgoingMail mail{filled.to, filled.subject, filled.body, GetText(reservation.patientCode),
                          GetText(reservation.staffId)};
  return ExecMail(desk.programs,
                  contact == kContactByDraft ? DraftMailCommand(mail, "") : SendMailCommand(mail));
}

}  // namespace

GuardianFallback FallbackOf(TemplateRole role) {
  // A finished treatment's mail has no word for an unknown guardian: deliberate.
  return role == TemplateRole::kTreatmentFinished ? GuardianFallback::kNothing
                                                  : GuardianFallback::kGeneralWord;
}

int ReadPatientOf(const tagRESERVATION& reservation, CBaseDBCall& table) {
  char key[sizeof reservation.patientCode]{};
  const std::string_view code = GetText(reservation.patientCode);
  std::memcpy(key, code.data(), code.size());
  (void)table.SetKey(0);
  table.SetKeyBuffer(key, sizeof key);
  return table.GetEQ();
}

PlaceholderValues ValuesOf(const tagRESERVATION& reservation, const tagPATIENTDB& patient, const std::tm& now,
                           GuardianFallback fallback) {
  PlaceholderValues values;
  const auto value = [&](Placeholder placeholder) -> std::string& {
    return values[static_cast<std::size_t>(placeholder)];
  };
  value(Placeholder::kPatientName) = FirstOf(patient.name, patient.otherName);
  value(Placeholder::kPatientId) = GetText(patient.patientCode);
  value(Placeholder::kCaseNumber) = GetText(patient.caseNumber);
  value(Placeholder::kReservationDate) = CTools::MakeDate(GetText(reservation.reservationDate));
  value(Placeholder::kReservationTime) = TimeText(GetText(reservation.startTime));
  value(Placeholder::kSentAt) = DateTimeText(now);
  value(Placeholder::kGuardianName) = GuardianText(patient, fallback);
  PutEarlier(reservation, value(Placeholder::kEarlierDate), value(Placeholder::kEarlierTime));
  return values;
}

std::string AddressList(const tagPATIENTDB2& contact) {
  std::string list;
  for (const std::string_view address :
       {GetText(contact.mailAddress1), GetText(contact.mailAddress2), GetText(contact.mailAddress3)}) {
    if (address.empty()) continue;
    if (!list.empty()) list += ',';
    list += address;
  }
  return list;
}

FilledMail FillMail(const MailTemplate& mailTemplate, const tagRESERVATION& reservation,
                    const tagPATIENTDB& patient, const tagPATIENTDB2& contact, const std::tm& now,
                    GuardianFallback fallback) {
  const PlaceholderValues values = ValuesOf(reservation, patient, now, fallback);
  return {contact.mailPermission == 0 ? "" : AddressList(contact),
          FillPlaceholders(mailTemplate.subject, values), FillPlaceholders(mailTemplate.body, values)};
}

int SetAppoPatientInfo2(const tagRESERVATION& reservation, CPatientDB& patient, CPatientDB2& contact) {
  const bool found = ReadPatientOf(reservation, patient) == 0 && ReadPatientOf(reservation, contact) == 0;
  return found && contact.record.mailPermission != 0 ? 1 : 0;
}

int SendRoleMail(const MailDesk& desk, TemplateRole role, CKovaDBSys* db, const tagRESERVATION& reservation) {
  const auto roleMail = std::find_if(std::begin(kRoleMails), std::end(kRoleMails),
                                     [&](const RoleMail& each) { return each.role == role; });
  return roleMail == std::end(kRoleMails) ? 0 : Send(desk, *roleMail, db, reservation);
}

FillOutcome FillForReservation(const TemplateStore& templates, int number, CKovaDBSys* db,
                               const tagRESERVATION& reservation, const std::tm& now, GuardianFallback fallback,
                               FilledMail& mail) {
  MailTemplate mailTemplate;
  const os::FileOutcome taken = templates.Read(number, mailTemplate);
  if (taken == os::FileOutcome::kNotThere) return FillOutcome::kNothing;
  if (taken != os::FileOutcome::kOk) return FillOutcome::kUnreadable;
  const CKovaReads reads(db);
  store::On<CPatientDB> patient(db);
  store::On<CPatientDB2> contact(db);
  int result = ReadPatientOf(reservation, patient);
  if (result == 0) result = ReadPatientOf(reservation, contact);
  if (store::FoundOrNone(result) != 0) return FillOutcome::kUnreadable;
  if (result != 0) return FillOutcome::kNothing;
  mail = FillMail(mailTemplate, reservation, patient.record, contact.record, now, fallback);
  return FillOutcome::kFilled;
}

}  // namespace kova::mail
