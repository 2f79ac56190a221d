#include "platform/os/filesystem_path.h"

#ifdef _WIN32
#include "platform/os/win32/native_path.h"
#else
#include "platform/os/posix/native_path.h"
#endif

namespace kova::os {

std::filesystem::path ToFilesystemPath(std::string_view path) { return NativePath(path); }

}  // namespace kova::os
