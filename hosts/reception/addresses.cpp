#include "hosts/reception/addresses.h"

#include <afxwin.h>

#include <optional>
#include <string>

#include "entry/kova_com_dlg.h"
#include "hosts/reception/resource.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

/// What was typed; nothing when it has characters that no address of the list has.
std::optional<std::string> Typed(HWND window, int control) {
  wchar_t wide[512];
  const UINT length = GetDlgItemTextW(window, control, wide, 512);
  std::string text;
  if (!text932::FromUtf16(std::u16string(wide, wide + length), text)) return std::nullopt;
  return text;
}

void Show(HWND window, int control, const CString& found) {
  if (found.IsEmpty()) {
    MessageBeep(MB_ICONINFORMATION);
    return;
  }
  const std::u16string text = text932::ToUtf16(found.GetString());
  SetDlgItemTextW(window, control, std::wstring(text.begin(), text.end()).c_str());
}

void FindAddress(HWND window) {
  CWnd parent;
  parent.m_hWnd = window;
  if (const auto code = Typed(window, IDC_POSTAL_CODE))
    Show(window, IDC_ADDRESS, CKovaComDlg::SearchAddressFormPost(&parent, code->c_str()));
}

void FindCode(HWND window) {
  CWnd parent;
  parent.m_hWnd = window;
  if (const auto address = Typed(window, IDC_ADDRESS))
    Show(window, IDC_POSTAL_CODE, CKovaComDlg::SearchPostFromAddress(&parent, address->c_str()));
}

INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_INITDIALOG) return TRUE;
  if (message != WM_COMMAND) return FALSE;
  switch (LOWORD(wParam)) {
    case IDC_FIND_ADDRESS:  // also Enter in either field
      GetFocus() == GetDlgItem(window, IDC_ADDRESS) ? FindCode(window) : FindAddress(window);
      return TRUE;
    case IDC_FIND_CODE:
      FindCode(window);
      return TRUE;
    case IDCANCEL:
      EndDialog(window, 0);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

void LookUpAddresses(HWND parent) {
  DialogBoxW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_ADDRESSES), parent, &Procedure);
}

}  // namespace kova::hosts
