#include "visitflow/win32/board_list.h"

#include <algorithm>
#include <set>
#include <utility>

#include "window/wide_text.h"

namespace kova::visitflow {

void BoardListView::Attach(HWND list, const std::vector<window::ListColumn>& columns) {
  window_ = list;
  const auto text = [this](int row, int column) {
    const BoardRow* shown = RowAt(row);
    // A row of the stage list has its text in its stage's column, any other in the only one.
    return shown != nullptr && column == std::max(shown->stage, 0) ? shown->caption : std::string();
  };
  list_.Attach(list, columns, text, LVS_EX_GRIDLINES | LVS_EX_INFOTIP);
}

const BoardRow* BoardListView::RowAt(int row) const {
  return row < 0 || row >= static_cast<int>(rows_.size()) ? nullptr : &rows_[static_cast<std::size_t>(row)];
}

void BoardListView::Show(const std::vector<BoardRow>& rows) {
  if (rows == rows_) return;
  const std::vector<std::string> selected = SelectedKeys();
  const BoardRow* focus = RowAt(ListView_GetNextItem(window_, -1, LVNI_FOCUSED));
  const std::string focused = focus == nullptr ? "" : focus->key;
  const int top = ListView_GetTopIndex(window_);
  const std::string topKey = RowAt(top) == nullptr ? "" : RowAt(top)->key;
  const std::vector<BoardRow> before = std::exchange(rows_, rows);
  if (rows_.size() != before.size())
    SendMessageW(window_, LVM_SETITEMCOUNT, rows_.size(), LVSICF_NOSCROLL | LVSICF_NOINVALIDATEALL);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const bool same =
        i < before.size() && before[i].caption == rows_[i].caption && before[i].stage == rows_[i].stage;
    if (!same) ListView_RedrawItems(window_, static_cast<int>(i), static_cast<int>(i));
  }
  SelectKeys(selected, focused);
  KeepPlace(topKey, top);
}

// Only what differs is set, as every change of state draws a row.
void BoardListView::SelectKeys(const std::vector<std::string>& keys, const std::string& focused) {
  const std::set<std::string> wanted(keys.begin(), keys.end());
  for (int i = 0; i < static_cast<int>(rows_.size()); ++i) {
    const std::string& key = RowAt(i)->key;
    UINT state = wanted.contains(key) ? LVIS_SELECTED : 0;
    if (!focused.empty() && key == focused) state |= LVIS_FOCUSED;
    if (ListView_GetItemState(window_, i, LVIS_SELECTED | LVIS_FOCUSED) != state)
      ListView_SetItemState(window_, i, state, LVIS_SELECTED | LVIS_FOCUSED);
  }
}

void BoardListView::KeepPlace(const std::string& topKey, int top) {
  const auto at =
      std::find_if(rows_.begin(), rows_.end(), [&](const BoardRow& row) { return row.key == topKey; });
  if (topKey.empty() || at == rows_.end()) return;
  const int moved = static_cast<int>(at - rows_.begin()) - top;
  RECT row{};
  if (moved == 0 || !ListView_GetItemRect(window_, 0, &row, LVIR_BOUNDS)) return;
  const int shift = static_cast<int>(at - rows_.begin()) - ListView_GetTopIndex(window_);
  if (shift != 0) ListView_Scroll(window_, 0, shift * (row.bottom - row.top));
}

std::vector<std::string> BoardListView::SelectedKeys() const {
  std::vector<std::string> keys;
  for (const int row : list_.AllSelected()) {
    if (const BoardRow* shown = RowAt(row)) keys.push_back(shown->key);
  }
  return keys;
}

bool BoardListView::Answer(const NMHDR& header) {
  if (header.hwndFrom != window_) return false;
  if (header.code != LVN_GETINFOTIPW) return list_.Answer(header);
  const auto& tip = reinterpret_cast<const NMLVGETINFOTIPW&>(header);
  const BoardRow* row = RowAt(tip.iItem);
  if (row == nullptr || tip.cchTextMax <= 0) return true;
  lstrcpynW(tip.pszText, window::WideForEdit(row->tip).c_str(), tip.cchTextMax);
  return true;
}

}  // namespace kova::visitflow
