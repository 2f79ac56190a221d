#pragma once

#include <afxwin.h>

#include "entry/kovacomdlg_export.h"

class CKovaDBSys;

/// The dialogs that the suite's applications share, and the fillers of their lists: static operations on the
/// caller's user-interface thread. Every dialog is modal over the top-level window of `parent` (null: over
/// the thread's active window). Windows only.
class KOVACOMDLG_API CKovaComDlg {
 public:
  CKovaComDlg() = delete;

  /// The editor of the practice's mail templates.
  ///
  /// @param mode    what the template is for: 0 reservation reminder, 1 did not come, 2 visited, 3 treatment
  ///                finished, 4 change confirmation, 5 reservation confirmation; the choice is stored in the
  ///                settings. -1: the chosen number goes to `number` and no setting is written
  /// @param number  receives the chosen number; may be null
  /// @param db      for the preview with real reservations; null for a made-up one
  /// @return 1 when it was closed with OK; 0 otherwise, also for another mode, and `number` is then untouched
  static int OpenMailTemplateSetting(CWnd* parent, int mode, int* number = nullptr, CKovaDBSys* db = nullptr);

  /// The tree of the practice's mail templates, to choose one or to change their order.
  ///
  /// @param number  the number to show selected, and then the chosen one (0: none); may be null
  /// @return 1 when it was closed with OK, 0 otherwise, and `number` is then untouched
  static int MailTemplateTree(CWnd* parent, int* number);
};
