#include "platform/toollib/win32/browse_for_folder.h"

#include <shlobj.h>

#include <memory>
#include <utility>

#include "platform/text932/cp932.h"

namespace {

struct FreeItem {
  void operator()(ITEMIDLIST* item) const { CoTaskMemFree(item); }
};

std::wstring Wide(const std::string& text) {
  const std::u16string utf16 = kova::text932::ToUtf16(text);
  return {utf16.begin(), utf16.end()};
}

int CALLBACK SelectFirst(HWND window, UINT message, LPARAM, LPARAM selection) {
  if (message == BFFM_INITIALIZED) SendMessageW(window, BFFM_SETSELECTIONW, TRUE, selection);
  return 0;
}

}  // namespace

CBrowseForFolder::CBrowseForFolder(HWND owner, unsigned flags, std::string prompt, std::string selection)
    : owner_(owner), flags_(flags), prompt_(std::move(prompt)), selection_(std::move(selection)) {}

bool CBrowseForFolder::SelectFolder() {
  const std::wstring title = Wide(prompt_);
  const std::wstring first = Wide(selection_);
  BROWSEINFOW browse{};
  browse.hwndOwner = owner_;
  browse.lpszTitle = title.c_str();
  browse.ulFlags = flags_;
  browse.lpfn = &SelectFirst;
  browse.lParam = reinterpret_cast<LPARAM>(first.c_str());
  const HRESULT initialised = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  bool isChosen = false;
  if (const std::unique_ptr<ITEMIDLIST, FreeItem> item{SHBrowseForFolderW(&browse)}) {
    std::wstring path(32768, L'\0');
    isChosen =
        SHGetPathFromIDListEx(item.get(), path.data(), static_cast<DWORD>(path.size()), GPFIDL_DEFAULT) != 0;
    path.resize(std::char_traits<wchar_t>::length(path.c_str()));
    std::string chosen;
    isChosen = isChosen && kova::text932::FromUtf16(std::u16string(path.begin(), path.end()), chosen);
    if (isChosen) selection_ = std::move(chosen);
  }
  if (SUCCEEDED(initialised)) CoUninitialize();
  return isChosen;
}
