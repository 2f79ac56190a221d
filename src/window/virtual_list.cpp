#include "window/virtual_list.h"

#include <algorithm>

#include "window/wide_text.h"

namespace kova::window {

void VirtualList::Attach(HWND list, const std::vector<ListColumn>& columns, CellText text,
                         DWORD extendedStyle) {
  list_ = list;
  text_ = std::move(text);
  ListView_SetExtendedListViewStyle(
      list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP | extendedStyle);
  SetColumns(columns);
}

void VirtualList::SetColumns(const std::vector<ListColumn>& columns) {
  while (ListView_DeleteColumn(list_, 0)) {
  }
  for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
    const ListColumn& column = columns[static_cast<std::size_t>(i)];
    std::wstring title = Wide(column.title);
    LVCOLUMNW added{};
    added.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    added.fmt = column.align;
    added.cx = column.width;
    added.pszText = title.data();
    added.iSubItem = i;
    SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&added));
  }
}

void VirtualList::ShowSorted(int column, bool descending) {
  HWND header = ListView_GetHeader(list_);
  for (int i = 0; i < Header_GetItemCount(header); ++i) {
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
    if (i == column) item.fmt |= descending ? HDF_SORTDOWN : HDF_SORTUP;
    SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
  }
}

void VirtualList::SetRowCount(int rows) {
  SendMessageW(list_, LVM_SETITEMCOUNT, static_cast<WPARAM>(rows), LVSICF_NOSCROLL | LVSICF_NOINVALIDATEALL);
  // Those that can be seen, the last one perhaps in part.
  const int top = ListView_GetTopIndex(list_);
  if (rows > 0)
    ListView_RedrawItems(list_, top, std::min(rows - 1, top + ListView_GetCountPerPage(list_) + 1));
}

int VirtualList::RowCount() const { return ListView_GetItemCount(list_); }

std::optional<int> VirtualList::Selected() const {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  return row < 0 ? std::nullopt : std::optional(row);
}

std::vector<int> VirtualList::AllSelected() const {
  std::vector<int> rows;
  for (int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED); row >= 0;
       row = ListView_GetNextItem(list_, row, LVNI_SELECTED))
    rows.push_back(row);
  return rows;
}

void VirtualList::Select(std::optional<int> row) {
  // Of all rows at once would touch each of a hundred thousand.
  for (const int selected : AllSelected()) ListView_SetItemState(list_, selected, 0, LVIS_SELECTED);
  if (!row) return;
  ListView_SetItemState(list_, *row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  ListView_EnsureVisible(list_, *row, FALSE);
}

bool VirtualList::Answer(const NMHDR& header) {
  if (header.hwndFrom != list_ || header.code != LVN_GETDISPINFOW) return false;
  LVITEMW& item = const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(header)).item;
  if ((item.mask & LVIF_TEXT) == 0 || item.cchTextMax <= 0) return true;
  const std::wstring text = Wide(text_(item.iItem, item.iSubItem));
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
  std::copy_n(text.begin(), length, item.pszText);
  item.pszText[length] = L'\0';
  return true;
}

}  // namespace kova::window
