#include "platform/os/program.h"

#include <unistd.h>

#include <string_view>

#include "platform/os/paths.h"
#include "platform/text932/cp932.h"

namespace kova::os {

std::string ProgramFolder() {
  std::string name(4096, '\0');
  const ssize_t length = ::readlink("/proc/self/exe", name.data(), name.size());
  if (length <= 0 || static_cast<std::size_t>(length) == name.size()) return {};
  name.resize(static_cast<std::size_t>(length));
  std::string path;
  if (!text932::FromUtf8(name, path)) return {};
  return std::string(FolderOf(text932::ReplaceAll(path, "/", "\\")));
}

std::string WorkstationName() {
  char host[256] = {};
  std::string name;
  return ::gethostname(host, sizeof host - 1) == 0 && text932::FromUtf8(host, name) ? name : std::string();
}

}  // namespace kova::os
