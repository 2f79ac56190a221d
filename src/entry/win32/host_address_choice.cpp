#include "entry/host_address_choice.h"

#include <windows.h>

#include <utility>

#include "postal/win32/select_address_dlg.h"

namespace kova::entry {

std::string HostChooseAddress(CWnd* parent, postal::AddressChoice choice, const std::string& listAge) {
  postal::CSelectAddressDlg dialog(std::move(choice), listAge);
  return dialog.Run(parent == nullptr ? nullptr : parent->GetSafeHwnd());
}

}  // namespace kova::entry
