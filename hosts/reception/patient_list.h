#pragma once

// "患者一覧": the practice's patients, in the columns that the workstation's profile asks for.

#include <windows.h>
#include <afxwin.h>
#include <commctrl.h>

#include <string>
#include <vector>

#include "hosts/reception/patient_columns.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {

class PatientList {
 public:
  /// `db` must outlive the window.
  explicit PatientList(CKovaDBSys& db) : db_(db) {}

  /// Shows the window over `parent` until it is closed.
  void Run(HWND parent);

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Start(HWND window);
  void ReadPatients();
  void ShowColumns();
  void KeepWidths();
  void SetUpColumns();
  void GiveText(NMLVDISPINFOW& asked) const;
  void Stretch() const;

  CKovaDBSys& db_;
  CWnd window_;
  std::vector<tagPATIENTDB> patients_;
  std::vector<ShownColumn> columns_;  // of the profile, hidden ones among them
  bool withGuardian_ = false;
};

}  // namespace kova::hosts
