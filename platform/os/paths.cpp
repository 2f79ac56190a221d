#include "platform/os/paths.h"

#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

constexpr bool Splits(char c) { return c == '\\' || c == '/' || c == ':'; }

}  // namespace

std::string AddTrailingDelimiter(std::string_view path) {
  std::string out(path);
  if (!path.empty() && !text932::EndsWith(path, '\\')) out += '\\';
  return out;
}

std::string_view DropTrailingDelimiter(std::string_view path) {
  if (text932::EndsWith(path, '\\')) path.remove_suffix(1);
  return path;
}

std::string_view FolderOf(std::string_view path) {
  std::size_t end = 0;
  for (std::size_t i = 0; i < path.size();) {
    const std::size_t length = text932::CharLength(path, i);
    if (length == 1 && Splits(path[i])) end = i + 1;
    i += length;
  }
  return path.substr(0, end);
}

std::string_view FileNameOf(std::string_view path) { return path.substr(FolderOf(path).size()); }

std::string_view ParentFolderOf(std::string_view path) {
  const std::string_view folder = FolderOf(path);
  if (folder.size() < path.size() || folder.empty() || folder.back() == ':') return folder;
  return FolderOf(path.substr(0, path.size() - 1));
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  return AddTrailingDelimiter(folder).append(name);
}

}  // namespace kova::os
