// Mail templates: filling them and opening the editor. mail_bench FOLDER: an empty folder of its own on the
// disk to measure.

#include <afxwin.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "bench/raw_table.h"
#include "entry/kova_sub_tools.h"
#include "mail/reservation_mail.h"
#include "mail/template_editor.h"
#include "mail/template_store.h"
#include "platform/os/application_profile.h"
#include "platform/os/clock.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"

namespace kova::bench {
namespace {

using os::FileOutcome;
using store::PutText;
using store::On;

constexpr int kPatients = 1000;

const std::string kWords =
    "$_PNAME $_PID $_PCASE $_REDATE $_RETIME $_DATETIME $_PARENTNAME $_BREDATE $_BRETIME $_NOAPPLI\r\n";

std::string CodeOf(int patient) {
  char text[16];
  std::snprintf(text, sizeof text, "%010d", patient);
  return text;
}

void PutPatients(CKovaDBSys& db) {
  On<CPatientDB> patient(db);
  On<CPatientDB2> contact(db);
  Check(patient.BeginTran() == 0, "begin");
  for (int i = 0; i < kPatients; ++i) {
    PutText(patient.record.patientCode, CodeOf(i));
    PutText(patient.record.name, "name of a patient");
    PutText(contact.record.patientCode, CodeOf(i));
    PutText(contact.record.mailAddress1, "patient@example.jp");
    contact.record.mailPermission = 1;
    Check(patient.Insert() == 0 && contact.Insert() == 0, "insert");
  }
  Check(patient.EndTran() == 0, "end");
}

tagRESERVATION ReservationOf(int patient) {
  tagRESERVATION reservation{};
  PutText(reservation.patientCode, CodeOf(patient));
  PutText(reservation.reservationDate, "20261122");
  PutText(reservation.startTime, "0930");
  return reservation;
}

bool ReadByKey(CBaseDBCall& table, const tagRESERVATION& reservation) {
  (void)table.SetKey(0);
  table.SetKeyBuffer(reservation.patientCode, sizeof reservation.patientCode);
  return table.GetEQ() == 0;
}

void FillForPatients(const std::string& folder, mail::TemplateStore& templates) {
  Check(KovaCreateDatabase(folder.c_str()) == 0, "create");
  CKovaDBSys db;
  Check(db.OpenDB(folder.c_str()) == 0, "OpenDB");
  PutPatients(db);
  Check(templates.Write(6, {"visit", "$_PNAME", kWords + std::string(400, 'x')}) == FileOutcome::kOk,
        "template");
  On<CPatientDB> patient(db);
  On<CPatientDB2> contact(db);
  const auto readAll = [&](int) {
    for (int i = 0; i < kPatients; ++i) {
      const tagRESERVATION reservation = ReservationOf(i);
      Check(ReadByKey(patient, reservation) && ReadByKey(contact, reservation), "GetEQ");
    }
  };
  const auto fillAll = [&](int) {
    mail::MailTemplate visit;
    Check(templates.Read(6, visit) == FileOutcome::kOk, "Read");
    const std::tm now = os::LocalTime();
    for (int i = 0; i < kPatients; ++i) {
      const tagRESERVATION reservation = ReservationOf(i);
      Check(mail::SetAppoPatientInfo2(reservation, patient, contact) != 0, "SetAppoPatientInfo2");
      const mail::FilledMail filled = mail::FillMail(visit, reservation, patient.record, contact.record, now,
                                                     mail::GuardianFallback::kGeneralWord);
      Check(!filled.to.empty() && filled.subject == "name of a patient", "FillMail");
    }
  };
  Compare("one template for 1,000 reservations", "<= 1.5", 21, kPatients, fillAll, readAll);
  CString to, subject, body;
  Compare(
      "FillReservationTemplate, one call each", "-", 11, kPatients,
      [&](int) {
        for (int i = 0; i < kPatients; ++i) {
          Check(CKovaSubTools::FillReservationTemplate(&db, 6, ReservationOf(i), to, subject, body) == 1,
                "fill");
        }
      },
      readAll);
}

void FillLongText(mail::TemplateStore& templates) {
  std::string body;
  while (body.size() < (std::size_t{10} << 20))
    body += (body.size() % 4096 < 200 ? kWords : std::string(100, 'x'));
  Check(templates.Write(1, {"long", "", body}) == FileOutcome::kOk, "long template");
  const mail::PlaceholderValues values =
      mail::ValuesOf(ReservationOf(1), {}, os::LocalTime(), mail::GuardianFallback::kGeneralWord);
  Compare(
      "template of 10 MB opened and filled", "<= 1.5", 41, 1,
      [&](int) {
        mail::MailTemplate read;
        Check(templates.Read(1, read) == FileOutcome::kOk, "Read");
        const std::string filled = mail::FillPlaceholders(std::move(read.body), values);
        Check(filled.find("$_") == std::string::npos, "FillPlaceholders");
      },
      [&](int) {
        std::vector<std::string> copies;
        for (int i = 0; i < 10; ++i) copies.assign(1, body);
        Check(copies[0].size() == body.size(), "copy");
      });
}

void OpenEditor(const std::string& folder, foundation::SettingsStore& settings) {
  constexpr int kTemplates = 2000;
  os::Files& files = os::RealFiles();
  mail::TemplateStore templates(files, folder);
  for (int i = 1; i <= kTemplates; ++i) {
    const std::string name = "template " + std::to_string(i);
    Check(templates.Write(i, {name, "subject", std::string(1000, 'x')}) == FileOutcome::kOk, "Write");
  }
  struct : foundation::Prompts {
    bool AskYesNo(std::string_view) override { return false; }
    void Inform(std::string_view) override {}
  } prompts;
  Compare(
      "editor on 2,000 templates", "<= 2", 21, 1,
      [&](int) {
        mail::TemplateEditor editor(templates, settings, prompts, mail::TemplateRole::kCome);
        editor.Open();
        Check(editor.Shown().list.size() == kTemplates && !editor.Shown().fields.name.empty(), "Open");
      },
      [&](int) {
        std::string content;
        for (int i = 1; i <= kTemplates; ++i) {
          const std::string name = folder + "\\" + mail::NumberText(i) + ".$mt";
          Check(files.Read(name, std::size_t{1} << 20, content) == FileOutcome::kOk, "Read");
        }
      });
}

int Main(const std::string& folder) {
  CWinApp app;
  const std::string profileFile = folder + "/mail.ini";
  app.m_pszProfileName = profileFile.c_str();
  std::ofstream(profileFile) << "[GLOBAL]\r\nDATABASE=" << folder << "\r\n";
  std::filesystem::create_directories(folder + "/templates");
  std::filesystem::create_directories(folder + "/many");
  os::IniApplicationProfile profile(os::RealFiles(), profileFile);
  foundation::SettingsStore settings(profile, os::RealFiles());
  mail::TemplateStore templates(os::RealFiles(), folder + "\\templates");
  FillForPatients(folder + "/mail_practice", templates);
  FillLongText(templates);
  OpenEditor(folder + "\\many", settings);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 2) return kova::bench::Main(argv[1]);
  std::fprintf(stderr, "usage: mail_bench FOLDER\n");
  return 2;
}
