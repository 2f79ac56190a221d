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
