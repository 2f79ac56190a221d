#include "platform/os/drives.h"

#include <sys/vfs.h>

#include "platform/os/filesystem_path.h"

namespace kova::os {

bool IsRemoteFolder(std::string_view folder) {
  struct statfs info = {};
  if (statfs(ToFilesystemPath(folder).c_str(), &info) != 0) return false;
  switch (static_cast<unsigned long>(info.f_type)) {
    case 0x6969:      // NFS
    case 0x517B:      // SMB
    case 0xFF534D42:  // CIFS
    case 0xFE534D42:  // SMB2
    case 0x01021997:  // 9P
      return true;
    default:
      return false;
  }
}

}  // namespace kova::os
