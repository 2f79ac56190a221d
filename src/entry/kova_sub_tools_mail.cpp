// The mail operations of the exported class.

#include <string>
#include <string_view>

#include "entry/host_prompts.h"
#include "entry/kova_sub_tools.h"
#include "entry/session.h"
#include "entry/template_session.h"
#include "foundation/folders.h"
#include "mail/mail_programs.h"
#include "mail/reservation_mail.h"
#include "mail/template_roles.h"
#include "mail/template_store.h"
#include "mail/template_tree.h"
#include "platform/os/child_programs.h"
#include "platform/os/clock.h"

using namespace kova;
using entry::Guarded;
using entry::Session;
using entry::TemplateSession;
using entry::View;

namespace {

// Unlike the other operations' texts these may hold zero bytes.
CString WholeText(const std::string& text) { return CString(text.c_str(), static_cast<int>(text.size())); }

std::string WholeBytes(const CString& text) {
  return std::string(text.GetString(), static_cast<std::size_t>(text.GetLength()));
}

int ZeroForDone(os::FileOutcome outcome) { return outcome == os::FileOutcome::kOk ? 0 : -1; }

int SendAbout(mail::TemplateRole role, CKovaDBSys* db, const tagRESERVATION& reservation) {
  return Guarded(0, [&] {
    TemplateSession session;
    entry::HostPrompts prompts;
    const foundation::SettingsSnapshot settings = session.settings.Open();
    const mail::MailDesk desk{settings, session.templates, os::RealChildPrograms(), prompts, os::LocalTime()};
    return mail::SendRoleMail(desk, role, db, reservation);
  });
}

}  // namespace

int CKovaSubTools::SetReservationTemplate(int number, CString name, CString subject, CString body) {
  return Guarded(-1, [&] {
    return ZeroForDone(
        TemplateSession().templates.Write(number, {WholeBytes(name), WholeBytes(subject), WholeBytes(body)}));
  });
}

int CKovaSubTools::GetReservationTemplate(int number, CString& name, CString& subject, CString& body) {
  return Guarded(-1, [&] {
    mail::MailTemplate read;
    if (TemplateSession().templates.Read(number, read) != os::FileOutcome::kOk) return -1;
    CString readName = WholeText(read.name), readSubject = WholeText(read.subject);
    body = WholeText(read.body);
    subject = std::move(readSubject);
    name = std::move(readName);
    return 0;
  });
}

int CKovaSubTools::GetNextTemplateNumber() {
  return Guarded(0, [] { return TemplateSession().templates.NextNumber(); });
}

int CKovaSubTools::DeleteReservationTemplate(int number) {
  return Guarded(-1, [&] { return ZeroForDone(TemplateSession().templates.Delete(number)); });
}

int CKovaSubTools::LoadTemplateTree(CStringArray* lines) {
  if (lines == nullptr) return 0;
  lines->RemoveAll();
  return Guarded(0, [&] {
    const TemplateSession session;
    const mail::TemplateTree tree(session.templates.ReadTreeFile(), session.templates.Numbers());
    const std::string text = tree.FileText();
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = text.find("\r\n", at);
      lines->Add(text.substr(at, end - at).c_str());
      at = end + 2;
    }
    return static_cast<int>(lines->GetSize());
  });
}

int CKovaSubTools::SaveTemplateTree(const CStringArray* lines) {
  if (lines == nullptr) return -1;
  return Guarded(-1, [&] {
    std::string text;
    for (std::intptr_t i = 0; i < lines->GetSize(); ++i)
      text.append(lines->GetAt(i).GetString()).append("\r\n");
    TemplateSession session;
    const mail::TemplateTree tree(text, session.templates.Numbers());
    return ZeroForDone(session.templates.WriteTreeFile(tree.FileText()));
  });
}

int CKovaSubTools::SendMail(const char* to, const char* subject, const char* body, const char* patientId,
                            const char* staffId) {
  return Guarded(0, [&] {
    const mail::OutgoingMail sent{View(to), View(subject), View(body), View(patientId), View(staffId)};
    return ExecMail(mail::SendMailCommand(sent).c_str());
  });
}

int CKovaSubTools::DraftMail(const char* to, const char* subject, const char* body, const char* patientId,
                             const char* staffId, const char* itemId) {
  return Guarded(0, [&] {
    const mail::OutgoingMail draft{View(to), View(subject), View(body), View(patientId), View(staffId)};
    return ExecMail(mail::DraftMailCommand(draft, View(itemId)).c_str());
  });
}

int CKovaSubTools::SendEmlFiles(const char* path, int doNotKeep) {
  return Guarded(0, [&] { return ExecMail(mail::SendEmlFilesCommand(View(path), doNotKeep != 0).c_str()); });
}

int CKovaSubTools::SendReservationMail(const char* to, const char* date) {
  return Guarded(0, [&] { return ExecMail(mail::SendReservationMailCommand(View(to), View(date)).c_str()); });
}

int CKovaSubTools::ExecMail(const char* commandLine) {
  return mail::ExecMail(os::RealChildPrograms(), View(commandLine));
}

int CKovaSubTools::SendVisitMail(CKovaDBSys* db, tagRESERVATION reservation) {
  return SendAbout(mail::TemplateRole::kCome, db, reservation);
}

int CKovaSubTools::SendFinishedMail(CKovaDBSys* db, tagRESERVATION reservation) {
  return SendAbout(mail::TemplateRole::kTreatmentFinished, db, reservation);
}

int CKovaSubTools::SendChangeConfirmMail(CKovaDBSys* db, tagRESERVATION reservation) {
  return SendAbout(mail::TemplateRole::kChangeConfirm, db, reservation);
}

int CKovaSubTools::FillReservationTemplate(CKovaDBSys* db, int number, tagRESERVATION reservation,
                                           CString& to, CString& subject, CString& body) {
  return Guarded(-1, [&] {
    mail::FilledMail filled;
    const auto outcome = mail::FillForReservation(TemplateSession().templates, number, db, reservation,
                                                  os::LocalTime(), mail::GuardianFallback::kGeneralWord, filled);
    if (outcome != mail::FillOutcome::kFilled) return outcome == mail::FillOutcome::kNothing ? 0 : -1;
    CString filledTo = WholeText(filled.to), filledSubject = WholeText(filled.subject);
    body = WholeText(filled.body);
    subject = std::move(filledSubject);
    to = std::move(filledTo);
    return 1;
  });
}

int CKovaSubTools::SetAppoPatientInfo2(const tagRESERVATION& reservation, CPatientDB* patient,
                                       CPatientDB2* contact) {
  if (patient == nullptr || contact == nullptr) return 0;
  return Guarded(0, [&] { return mail::SetAppoPatientInfo2(reservation, *patient, *contact); });
}
