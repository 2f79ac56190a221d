#include "platform/os/program.h"

#include <windows.h>

#include <string_view>

#include "platform/os/paths.h"
#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

std::wstring ModuleFile() {
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) {
      name.resize(length);
      return name;
    }
    name.resize(name.size() * 2);
  }
}

bool ToPath932(const std::wstring& name, std::string& path) {
  return text932::FromUtf16(std::u16string(name.begin(), name.end()), path);
}

}  // namespace

std::string ProgramFolder() {
  std::wstring name = ModuleFile();
  std::string path;
  if (!ToPath932(name, path)) {
    // A folder whose name the code page lacks may have a short name that it holds.
    std::wstring shortName(name.size() + MAX_PATH, L'\0');
    const DWORD length =
        GetShortPathNameW(name.c_str(), shortName.data(), static_cast<DWORD>(shortName.size()));
    shortName.resize(length < shortName.size() ? length : 0);
    if (!ToPath932(shortName, path)) return {};
  }
  return std::string(FolderOf(path));
}

std::string WorkstationName() {
  wchar_t host[MAX_COMPUTERNAME_LENGTH + 1] = {};
  DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
  std::string name;
  return GetComputerNameW(host, &length) && ToPath932(std::wstring(host, length), name) ? name
                                                                                        : std::string();
}

}  // namespace kova::os
