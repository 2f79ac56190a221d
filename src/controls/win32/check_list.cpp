#include "controls/win32/check_list.h"

#include "window/wide_text.h"

namespace kova::controls {

void CheckList::Attach(HWND list, int width, DWORD extendedStyle) {
  list_ = list;
  ListView_SetExtendedListViewStyle(
      list, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_INFOTIP | LVS_EX_DOUBLEBUFFER | extendedStyle);
  wchar_t title[] = L"Items";
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.cx = width;
  column.pszText = title;
  SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
}

void CheckList::Show(const std::vector<RowText>& rows) {
  const bool isNew = rows.size() != texts_.size();
  if (isNew) SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  if (isNew) {
    ListView_DeleteAllItems(list_);
    texts_.assign(rows.size(), {});
  }
  for (std::size_t i = 0; i < rows.size(); ++i) Put(static_cast<int>(i), rows[i], isNew);
  if (isNew) SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
}

void CheckList::Put(int row, const RowText& content, bool isNew) {
  std::string& shown = texts_[static_cast<std::size_t>(row)];
  std::wstring text = window::Wide(content.text);
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = row;
  item.pszText = text.data();
  if (isNew) {
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  } else if (shown != content.text) {
    SendMessageW(list_, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  }
  shown = content.text;
  if (IsChecked(row) != content.isChecked) ListView_SetCheckState(list_, row, content.isChecked);
}

bool CheckList::IsChecked(int row) const { return ListView_GetCheckState(list_, row) == 1; }

void CheckList::CheckAll(bool isChecked) {
  for (int row = 0; row < static_cast<int>(texts_.size()); ++row)
    ListView_SetCheckState(list_, row, isChecked);
}

std::optional<int> CheckList::Selected() const {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  return row < 0 ? std::nullopt : std::optional(row);
}

void CheckList::Select(int row) {
  ListView_SetItemState(list_, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  ListView_EnsureVisible(list_, row, FALSE);
}

int CheckList::RowAt(POINT onScreen) const {
  const int top = ListView_GetTopIndex(list_);
  RECT first{};
  ScreenToClient(list_, &onScreen);
  if (!ListView_GetItemRect(list_, top, &first, LVIR_BOUNDS)) return 0;
  const LONG height = first.bottom - first.top;
  if (onScreen.y < first.top) return top - 1;
  const int row = top + static_cast<int>((onScreen.y - first.top) / (height > 0 ? height : 1));
  const int behind = top + ListView_GetCountPerPage(list_);
  return row < behind ? row : behind;
}

}  // namespace kova::controls
