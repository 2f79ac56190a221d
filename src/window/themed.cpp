#include "window/themed.h"

#include <windows.h>
#include <commctrl.h>

namespace kova::window {
namespace {

constexpr WORD kManifest = 2;  // resource of KovaComDlg.dll and of the programs that hold this room

HMODULE OwnModule() {
  HMODULE module = nullptr;
  static const int here = 0;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&here), &module);
  return module;
}

// Not linked: a host that opens no window does not load the controls, and here the version that the
// activation context asks for is found.
void AddControlClasses() {
  HMODULE library = LoadLibraryW(L"comctl32.dll");
  const auto add = library == nullptr
                       ? nullptr
                       : reinterpret_cast<decltype(&InitCommonControlsEx)>(
                             reinterpret_cast<void*>(GetProcAddress(library, "InitCommonControlsEx")));
  const INITCOMMONCONTROLSEX classes{
      sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES | ICC_DATE_CLASSES};
  if (add != nullptr) add(&classes);
}

}  // namespace

Themed::Themed() {
  wchar_t file[MAX_PATH * 4]{};
  HMODULE module = OwnModule();
  const DWORD length = GetModuleFileNameW(module, file, MAX_PATH * 4);
  ACTCTXW looks{};
  looks.cbSize = sizeof looks;
  looks.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
  looks.lpSource = file;
  looks.lpResourceName = MAKEINTRESOURCEW(kManifest);
  looks.hModule = module;
  if (length > 0) context_ = CreateActCtxW(&looks);
  if (context_ != INVALID_HANDLE_VALUE) ActivateActCtx(context_, &cookie_);
  AddControlClasses();
}

Themed::~Themed() {
  if (cookie_ != 0) DeactivateActCtx(0, cookie_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace kova::window
