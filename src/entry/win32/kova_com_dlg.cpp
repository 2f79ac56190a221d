#include "entry/kova_com_dlg.h"

#include <optional>

#include "entry/session.h"
#include "foundation/folders.h"
#include "mail/template_roles.h"
#include "mail/template_store.h"
#include "mail/win32/template_editor_dialog.h"
#include "mail/win32/template_tree_dialog.h"

using namespace kova;
using entry::Guarded;
using entry::Session;

namespace {

HWND HandleOf(const CWnd* window) { return window == nullptr ? nullptr : window->GetSafeHwnd(); }

struct TemplateSession : Session {
  mail::TemplateStore templates{files, foundation::TemplatesFolder(profile)};
};

/// The chosen number to the caller: 1; 0 when nothing was chosen.
int Choose(const std::optional<int>& chosen, int* number) {
  if (chosen && number != nullptr) *number = *chosen;
  return chosen ? 1 : 0;
}

}  // namespace

int CKovaComDlg::OpenMailTemplateSetting(CWnd* parent, int mode, int* number, CKovaDBSys* db) {
  if (!mail::IsTemplateRole(mode)) return 0;
  return Guarded(0, [&] {
    TemplateSession session;
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
