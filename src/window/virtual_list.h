#pragma once

// A list of rows that lie elsewhere: the control asks for the texts that it shows, so a hundred thousand rows
// open at once.

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova::window {

struct ListColumn {
  std::string title;        // code page 932
  int width = 80;           // pixels
  int align = LVCFMT_LEFT;  // or LVCFMT_RIGHT, LVCFMT_CENTER; the first column is always left
};

class VirtualList {
 public:
  /// The text of a cell, code page 932.
  using CellText = std::function<std::string(int row, int column)>;

  static constexpr DWORD kStyle = LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SINGLESEL;

  /// `list` is a list view of kStyle, whose notifications go to Answer.
  void Attach(HWND list, const std::vector<ListColumn>& columns, CellText text, DWORD extendedStyle = 0);
  /// Other columns in place of those that are there.
  void SetColumns(const std::vector<ListColumn>& columns);
  /// An arrow in a column's header: the rows are sorted by it.
  void ShowSorted(int column, bool descending);

  /// The rows have changed. Scroll position, selection and focus stay where they are as long as their rows
  /// exist.
  void SetRowCount(int rows);
  int RowCount() const;

  std::optional<int> Selected() const;
  std::vector<int> AllSelected() const;
  /// Selects, focuses and scrolls to a row; nothing: selects none.
  void Select(std::optional<int> row);

  /// True when the notification asked for a text, which is then given.
  bool Answer(const NMHDR& header);

 private:
  HWND list_ = nullptr;
  CellText text_;
};

}  // namespace kova::window
