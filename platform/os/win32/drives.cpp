#include "platform/os/drives.h"

#include <windows.h>

#include "platform/os/filesystem_path.h"

namespace kova::os {

bool IsRemoteFolder(std::string_view folder) {
  const std::wstring path = ToFilesystemPath(folder).wstring();
  if (path.rfind(L"\\\\", 0) == 0)
    return path.rfind(L"\\\\?\\", 0) != 0 || path.rfind(L"\\\\?\\UNC\\", 0) == 0;
  wchar_t volume[MAX_PATH] = {};
  if (!GetVolumePathNameW(path.c_str(), volume, MAX_PATH)) return false;
  return GetDriveTypeW(volume) == DRIVE_REMOTE;
}

}  // namespace kova::os
