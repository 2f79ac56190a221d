#pragma once

#include <afxwin.h>

#include <cstdint>

#include "entry/kovacomdlg_export.h"

/// A popup in which the user enters a date by Japanese eras: the era from a list, then year, month and day.
/// On the caller's user-interface thread, modal over the top-level window of what it covers.
class KOVACOMDLG_API CDateInput {
 public:
  /// The Western date: shown when the popup opens (0: that part is empty), and what the user confirmed once
  /// DoModal has given 1. Nothing is checked: month 13 comes through.
  int year = 0;
  int month = 0;
  int day = 0;

  /// The window whose rectangle the popup takes, grown where it is too small for the fields. Null: over the
  /// middle of the thread's active window.
  CWnd* cover = nullptr;

  /// The date is that of a birth: the age stands beside it.
  bool isBirth = false;

  /// 1 when the user confirmed a date; 2 otherwise, and the date is untouched.
  std::intptr_t DoModal();
};
