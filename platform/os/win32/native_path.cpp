#include "platform/os/win32/native_path.h"

#include <windows.h>

#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

// A folder's name must leave room for a file's short name in it.
constexpr std::size_t kOldLimit = MAX_PATH - 12;

std::wstring FullPath(const std::wstring& path) {
  const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(size, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
  full.resize(length < size ? length : 0);
  return full;
}

}  // namespace

std::wstring NativePath(std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return {};
  const std::u16string text = text932::ToUtf16(path);
  std::wstring wide(text.begin(), text.end());
  if (wide.size() < kOldLimit || wide.starts_with(L"\\\\?\\")) return wide;
  wide = FullPath(wide);
  return wide.starts_with(L"\\\\") ? L"\\\\?\\UNC" + wide.substr(1) : L"\\\\?\\" + wide;
}

}  // namespace kova::os
