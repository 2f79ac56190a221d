#pragma once

#include "entry/kovacomdlg_export.h"

/// The dialogs that the suite's applications share, and the fillers of their lists: static operations on the
/// caller's user-interface thread. None is here yet; each comes with its dialog.
class KOVACOMDLG_API CKovaComDlg {
 public:
  CKovaComDlg() = delete;
};
