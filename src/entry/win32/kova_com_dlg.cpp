#include "entry/kova_com_dlg.h"

#include <cstdio>
#include <ctime>
#include <optional>

#include "entry/daily_backup.h"
#include "entry/host_prompts.h"
#include "entry/kova_sub_tools.h"
#include "entry/session.h"
#include "entry/template_session.h"
#include "entry/win32/host_window.h"
#include "foundation/folders.h"
#include "mail/template_roles.h"
#include "mail/template_store.h"
#include "mail/win32/template_editor_dialog.h"
#include "mail/win32/template_tree_dialog.h"
#include "pickers/patient_query.h"
#include "pickers/win32/query_patient_dlg.h"
#include "platform/os/clock.h"
#include "visitflow/win32/visit_flow_dlg.h"

using namespace kova;
using entry::Guarded;
using entry::HandleOf;
using entry::Session;
using entry::TemplateSession;
using entry::ToCString;
using entry::View;

namespace {

/// The chosen number to the caller: 1; 0 when nothing was chosen.
int Choose(const std::optional<int>& chosen, int* number) {
  if (chosen && number != nullptr) *number = *chosen;
  return chosen ? 1 : 0;
}

int OpenBoard(const std::string& date) {
  Session session;
  entry::MindDailyBackup(session);
  CKovaDBSys db;
  // Where it cannot be opened the board says so; one that is lost later is opened anew until it is back.
  const auto open = [&] { (void)db.OpenDB(foundation::DatabaseFolder(session.profile).c_str()); };
  open();
  entry::HostPrompts prompts;
  const auto send = [&](const visitflow::MailsToSend& mails) {
    if (mails.visit) (void)CKovaSubTools::SendVisitMail(&db, mails.reservation);
    if (mails.finished) (void)CKovaSubTools::SendFinishedMail(&db, mails.reservation);
  };
  const auto clock = [] { return std::optional<std::tm>(os::LocalTime()); };
  visitflow::CVisitFlowDlg board({&db, session.settings, prompts, send, clock, open}, date);
  return static_cast<int>(board.RunModal(nullptr));
}

}  // namespace

int CKovaComDlg::OpenMailTemplateSetting(CWnd* parent, int mode, int* number, CKovaDBSys* db) {
  if (!mail::IsTemplateRole(mode)) return 0;
  return Guarded(0, [&] {
    TemplateSession session;
    entry::MindDailyBackup(Session());
    mail::TemplateEditorDialog dialog({session.templates, session.settings, db},
                                      static_cast<mail::TemplateRole>(mode));
    return Choose(dialog.Run(HandleOf(parent)), number);
  });
}

int CKovaComDlg::MailTemplateTree(CWnd* parent, int* number) {
  return Guarded(0, [&] {
    TemplateSession session;
    mail::TemplateTreeDialog dialog(session.templates, number == nullptr ? 0 : *number);
    return Choose(dialog.Run(HandleOf(parent)), number);
  });
}

int CKovaComDlg::OpenVisitFlowDialog(CString date) {
  if (date.GetLength() != 8) return -1;
  return Guarded(-1, [&] { return OpenBoard(date.GetString()); });
}

int CKovaComDlg::OpenVisitFlowDialog(int year, int month, int day) {
  return Guarded(-1, [&] {
    char date[40];
    std::snprintf(date, sizeof date, "%04d%02d%02d", year, month, day);
    return OpenBoard(date);
  });
}

CString CKovaComDlg::KCDQueryPatientData(CKovaDBSys* db, const char* mode, const char* text) {
  return Guarded(CString(), [&] {
    const Session session;
    entry::MindDailyBackup(session);
    const bool withMaidenName = session.profile.GetInt("KOVAMENTE", "WithMaidenName", 0) != 0;
    pickers::CQueryPatientDlg dialog(db, pickers::SearchModeOf(View(mode)), std::string(View(text)),
                                     withMaidenName);
    return ToCString(dialog.Run(nullptr));
  });
}
