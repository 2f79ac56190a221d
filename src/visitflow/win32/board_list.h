#pragma once

// One list of the board: rows by key, of which a refresh touches only what changed.

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

#include "visitflow/board.h"
#include "window/virtual_list.h"

namespace kova::visitflow {

class BoardListView {
 public:
  static constexpr DWORD kStyle = (window::VirtualList::kStyle & ~DWORD{LVS_SINGLESEL}) | LVS_NOSORTHEADER;

  void Attach(HWND list, const std::vector<window::ListColumn>& columns);

  /// Shows other rows. Rows that are as they were are not drawn again; selection, focus and the place
  /// scrolled to stay with their rows.
  void Show(const std::vector<BoardRow>& rows);

  std::vector<std::string> SelectedKeys() const;
  void SelectNone() { list_.Select(std::nullopt); }
  const BoardRow* RowAt(int row) const;
  HWND Window() const { return window_; }

  /// Texts and tips; true when the notification asked for one.
  bool Answer(const NMHDR& header);

 private:
  void KeepPlace(const std::string& topKey, int top);
  void SelectKeys(const std::vector<std::string>& keys, const std::string& focused);

  HWND window_ = nullptr;
  window::VirtualList list_;
  std::vector<BoardRow> rows_;
};

}  // namespace kova::visitflow
