#include "platform/os/dial_up.h"

#include <windows.h>
#include <ras.h>
#include <raserror.h>

#include <memory>
#include <string_view>
#include <type_traits>

#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

struct FreeModule {
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule>;

std::vector<RASENTRYNAMEW> Entries(decltype(&RasEnumEntriesW) enumerate) {
  std::vector<RASENTRYNAMEW> entries(16);
  for (int attempt = 0; attempt < 3; ++attempt) {
    auto size = static_cast<DWORD>(entries.size() * sizeof entries[0]);
    DWORD count = 0;
    entries[0].dwSize = sizeof entries[0];
    const DWORD error = enumerate(nullptr, nullptr, entries.data(), &size, &count);
    if (error == ERROR_SUCCESS) {
      entries.resize(count);
      return entries;
    }
    if (error != ERROR_BUFFER_TOO_SMALL) break;
    entries.resize(size / sizeof entries[0] + 1);
  }
  return {};
}

}  // namespace

std::vector<std::string> DialUpEntries() {
  // Loaded when asked for: not every machine has the dial-up service.
  const Module ras(LoadLibraryExW(L"rasapi32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
  if (!ras) return {};
  const auto enumerate = reinterpret_cast<decltype(&RasEnumEntriesW)>(
      reinterpret_cast<void*>(GetProcAddress(ras.get(), "RasEnumEntriesW")));
  if (enumerate == nullptr) return {};
  std::vector<std::string> names;
  for (const RASENTRYNAMEW& entry : Entries(enumerate)) {
    const std::wstring_view wide = entry.szEntryName;
    std::string name;
    if (text932::FromUtf16(std::u16string(wide.begin(), wide.end()), name)) names.push_back(std::move(name));
  }
  return names;
}

}  // namespace kova::os
