#pragma once

// Stand-in for the suite's folder browser; Windows only.

#include <windows.h>

#include <string>

class CBrowseForFolder {
 public:
  /// @param flags   BIF_ values
  /// @param prompt  code page 932, as all texts
  CBrowseForFolder(HWND owner, unsigned flags, std::string prompt, std::string selection);

  /// Lets the user choose a folder; true when one was chosen.
  [[nodiscard]] bool SelectFolder();
  /// The chosen folder; without delimiter at its end unless it is a drive.
  const std::string& GetSelectedFolder() const { return selection_; }

 private:
  HWND owner_;
  unsigned flags_;
  std::string prompt_;
  std::string selection_;
};
