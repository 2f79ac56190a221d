#pragma once

// The mail about one reservation: who gets it and what it says.

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/prompts.h"
#include "foundation/settings.h"
#include "mail/mail_programs.h"
#include "mail/placeholders.h"
#include "mail/template_roles.h"
#include "mail/template_store.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::mail {

/// What stands for a guardian whose name is not known.
enum class GuardianFallback { kGeneralWord, kNothing };

/// What a role's mails say there.
GuardianFallback FallbackOf(TemplateRole role);

/// Reads the reservation's patient through one of the patient tables, bound to a connection: the record store's result.
[[nodiscard]] int ReadPatientOf(const tagRESERVATION& reservation, CBaseDBCall& table);

/// The value of every placeholder.
PlaceholderValues ValuesOf(const tagRESERVATION& reservation, const tagPATIENTDB& patient, const std::tm& now,
                           GuardianFallback fallback);

/// The patient's mail addresses with "," between; empty without one. Permission is not looked at.
std::string AddressList(const tagPATIENTDB2& contact);

/// Template with its placeholders replaced, subject and body.
struct FilledMail {
  std::string to;  // empty when the patient has no address or allows no mail
  std::string subject;
  std::string body;
};
FilledMail FillMail(const MailTemplate& mailTemplate, const tagRESERVATION& reservation,
                    const tagPATIENTDB& patient, const tagPATIENTDB2& contact, const std::tm& now,
                    GuardianFallback fallback);

/// Reads the reservation's patient into both tables' records, which must be bound to a connection. Non-zero
/// when both are there and the patient allows mail; 0 otherwise.
int SetAppoPatientInfo2(const tagRESERVATION& reservation, CPatientDB& patient, CPatientDB2& contact);

/// What sending stands on; all must outlive the calls.
struct MailDesk {
  const foundation::SettingsSnapshot& settings;
  TemplateStore& templates;
  os::ChildPrograms& programs;
  foundation::Prompts& prompts;
  std::tm now;
};

/// Sends the role's mail (kCome, kTreatmentFinished or kChangeConfirm) about a reservation: 1 sent, 0 not,
/// whether it failed or there was nothing to send. Asks first when "GLOBAL"/"WatchConfirm" says so.
///
/// A change confirmation goes as "EMail"/"CONTACT" says: 0 it is sent, 1 it is opened as a draft for the
/// staff to finish, any other value: the patient is contacted in another way and no mail is made.
int SendRoleMail(const MailDesk& desk, TemplateRole role, CKovaDBSys* db, const tagRESERVATION& reservation);

enum class [[nodiscard]] FillOutcome {
  kFilled,
  kNothing,     // there is no such template, or no such patient
  kUnreadable,  // whether there is one cannot be read
};

/// Fills template `number` for a reservation without sending; `mail` is untouched unless kFilled.
FillOutcome FillForReservation(const TemplateStore& templates, int number, CKovaDBSys* db,
                               const tagRESERVATION& reservation, const std::tm& now, GuardianFallback fallback,
                               FilledMail& mail);

}  // namespace kova::mail
