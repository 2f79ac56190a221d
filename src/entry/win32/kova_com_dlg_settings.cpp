// The dialogs of the exported class in which a practice and a workstation are set up.

#include "entry/kova_com_dlg.h"
#include "entry/session.h"
#include "entry/win32/host_window.h"
#include "mail/win32/mail_settings_dialog.h"
#include "platform/os/program.h"
#include "platform/os/tcp.h"
#include "practice/win32/setting_dlg.h"

using namespace kova;
using entry::Guarded;
using entry::HandleOf;
using entry::Session;

int CKovaComDlg::OpenMailSetting(CWnd* parent) {
  return Guarded(0, [&] {
    Session session;
    mail::MailSettingsDialog dialog(session.settings, os::RealTcp());
    return dialog.RunModal(HandleOf(parent)) == IDOK ? 1 : 0;
  });
}

int CKovaComDlg::OpenSettingDBPath(CKovaDBSys* db, CWnd* parent) {
  return Guarded(IDCANCEL, [&] {
    Session session;
    practice::CSettingDlg dialog({session.files, session.profile, db, os::ProgramFolder()});
    return static_cast<int>(dialog.RunModal(HandleOf(parent)));
  });
}
