#pragma once

// A list of rows with check boxes and one column, as the column dialogs show it.

#include <windows.h>
#include <commctrl.h>

#include <optional>
#include <string>
#include <vector>

namespace kova::controls {

class CheckList {
 public:
  static constexpr DWORD kStyle = LVS_REPORT | LVS_SHOWSELALWAYS | LVS_SINGLESEL | LVS_NOSORTHEADER;

  struct RowText {
    std::string text;  // code page 932
    bool isChecked = false;
  };

  /// @param list   a list view of kStyle
  /// @param width  of the column, in pixels
  void Attach(HWND list, int width, DWORD extendedStyle = 0);

  /// Other rows in place of those that are there; only what differs is drawn. The selection stays where it
  /// is.
  void Show(const std::vector<RowText>& rows);

  bool IsChecked(int row) const;
  void CheckAll(bool isChecked);
  std::optional<int> Selected() const;
  /// Selects, focuses and scrolls to a row.
  void Select(int row);
  /// The row at a place of the screen; above the first row that shows the one before it, below the last one
  /// the one behind it.
  int RowAt(POINT onScreen) const;

 private:
  void Put(int row, const RowText& content, bool isNew);

  HWND list_ = nullptr;
  std::vector<std::string> texts_;
};

}  // namespace kova::controls
