#pragma once

// Stand-in for the part of MFC's afxwin.h that stands in exported signatures; see afx.h.

#include "afx.h"
#include "mfc_stand_in_export.h"

#ifdef _WIN32
struct HWND__;
using HWND = HWND__*;
#else
using HWND = void*;
#endif

/// A window; here only its handle.
class CWnd {
 public:
  HWND m_hWnd = nullptr;
  HWND GetSafeHwnd() const { return m_hWnd; }
};

/// An edit control.
class CEdit : public CWnd {};

/// A combo box. With a window it is that window's list (texts of code page 932 whatever the system's code
/// page is); without one, where MFC's own would assert, it is a list in memory, so that a program without
/// windows can have one filled.
class MFC_STAND_IN_API CComboBox : public CWnd {
 public:
  /// Removes all entries. What their item data points to is not freed.
  void ResetContent();
  /// The new entry's index, or -1. -1 for `at` is the end.
  int InsertString(int at, const char* text);
  int AddString(const char* text);
  int GetCount() const;
  /// Selects an entry, -1 for none; gives the index, or -1.
  int SetCurSel(int at);
  int GetCurSel() const;
  int SetItemData(int at, std::uintptr_t data);
  std::uintptr_t GetItemData(int at) const;
  void GetLBText(int at, CString& text) const;

 private:
  struct Entry {
    CString text;
    std::uintptr_t data = 0;
  };
  std::vector<Entry> entries_;
  int selected_ = -1;
};

/// The application object: here only its profile, an ini file named by m_pszProfileName.
class MFC_STAND_IN_API CWinApp {
 public:
  CWinApp();
  virtual ~CWinApp();
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;

  /// Full name of the profile file, code page 932. Owned by whoever sets it.
  const char* m_pszProfileName = nullptr;

  CString GetProfileString(const char* section, const char* key, const char* defaultValue = nullptr);
  unsigned GetProfileInt(const char* section, const char* key, int defaultValue);
  /// Non-zero when written.
  int WriteProfileString(const char* section, const char* key, const char* value);
  int WriteProfileInt(const char* section, const char* key, int value);
};

/// The one application object of the process; null when there is none.
MFC_STAND_IN_API CWinApp* AfxGetApp();
