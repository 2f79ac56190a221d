// The column dialogs of the exported class.

#include <windows.h>
#include <afxcmn.h>
#include <commctrl.h>

#include "controls/win32/show_item_list_sort_dlg.h"
#include "controls/win32/show_list_item_dlg.h"
#include "entry/kova_com_dlg.h"
#include "entry/session.h"
#include "window/wide_text.h"

using namespace kova;
using entry::Guarded;
using entry::Session;
using entry::View;

namespace {

HWND HandleOf(const CWnd* window) { return window == nullptr ? nullptr : window->GetSafeHwnd(); }

std::string ColumnTitle(HWND list, int column) {
  wchar_t title[260]{};
  LVCOLUMNW asked{};
  asked.mask = LVCF_TEXT;
  asked.pszText = title;
  asked.cchTextMax = 260;
  SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&asked));
  std::string text;
  std::wstring missing;
  (void)window::Narrow(title, text, missing);  // it is only shown
  return text;
}

/// The columns of a list in the order of its header.
std::vector<controls::NamedColumn> ColumnsOf(HWND list) {
  const int count = Header_GetItemCount(ListView_GetHeader(list));
  std::vector<int> order(count > 0 ? static_cast<std::size_t>(count) : 0);
  if (order.empty() || !ListView_GetColumnOrderArray(list, count, order.data())) return {};
  std::vector<controls::NamedColumn> columns;
  for (const int column : order) columns.push_back({column, ColumnTitle(list, column)});
  return columns;
}

}  // namespace

int CKovaComDlg::OpenListItemSetting(CListCtrl* list, const char* section, CWnd* parent) {
  if (list == nullptr) return IDCANCEL;
  return Guarded<int>(IDCANCEL, [&] {
    Session session;
    controls::CShowListItemDlg dialog(session.profile, View(section), ColumnsOf(HandleOf(list)));
    return static_cast<int>(dialog.RunModal(HandleOf(parent)));
  });
}

int CKovaComDlg::OpenListItemSettingSort(CListCtrl* list, const char* section, CStringArray* names, int,
                                         CWnd* parent, int) {
  if (list == nullptr) return IDCANCEL;
  return Guarded<int>(IDCANCEL, [&] {
    Session session;
    std::vector<std::string> texts;
    for (std::intptr_t i = 0; names != nullptr && i < names->GetSize(); ++i)
      texts.emplace_back(names->GetAt(i).GetString());
    controls::CShowItemListSortDlg dialog(session.profile, View(section), std::move(texts));
    return static_cast<int>(dialog.RunModal(HandleOf(parent)));
  });
}
