#pragma once

// The reception's window: the day, a reservation form, and the way to every dialog of the library.

#include <windows.h>
#include <afxwin.h>

#include <string>

#include "hosts/console/practice.h"

namespace kova::hosts {

class Reception {
 public:
  /// `practice` must outlive this object.
  explicit Reception(Practice& practice) : practice_(practice) {}

  /// Shows the window until it is closed.
  void Run();

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Start(HWND window);
  void CommandOrSay(int command);
  void Command(int command);
  void FillLists();
  void FreeLists();
  void OpenBoard();
  void ChooseDatabase();
  void ChooseReservationColumns();
  void QueryPatient(const char* mode);
  void Reserve();
  CComboBox Box(int control) const;
  std::string Code(int control, std::size_t offset) const;
  std::string Date() const;
  void Say(const std::string& text) const;

  Practice& practice_;
  CWnd window_;
  std::string patient_;  // ID of the chosen patient
};

}  // namespace kova::hosts
