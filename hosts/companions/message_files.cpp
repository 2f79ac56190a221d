#include "hosts/companions/message_files.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "hosts/companions/companion.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/text932/cp932.h"

namespace kova::companions {
namespace {

constexpr std::size_t kLargest = 64U << 20;

bool IsFieldName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) { return c > 0x20 && c < 0x7F; });
}

bool IsReceiver(std::string_view name) {
  return FitsPattern(name, "to") || FitsPattern(name, "cc") || FitsPattern(name, "bcc");
}

[[noreturn]] void Fail(const char* what, std::string_view path) {
  throw CompanionError(std::string(what) + " \"" + text932::ToUtf8(path) + "\"");
}

std::vector<std::string> FilesOf(std::string_view path) {
  os::Files& files = os::RealFiles();
  const bool isFolder = files.Kind(path) == os::PathKind::kFolder;
  const std::string_view pattern = isFolder ? "*.eml" : os::FileNameOf(path);
  if (pattern.find_first_of("*?") == std::string_view::npos) return {std::string(path)};
  const std::string folder(isFolder ? path : os::FolderOf(path));
  std::vector<std::string> names;
  (void)files.List(folder.empty() ? "." : folder, names);
  std::vector<std::string> paths;
  for (const std::string& name : names)
    if (FitsPattern(name, pattern)) paths.push_back(os::JoinPath(folder, name));
  return paths;
}

}  // namespace

bool IsMessage(std::string_view content) {
  bool hasReceiver = false;
  for (bool first = true; !content.empty(); first = false) {
    const std::size_t end = std::min(content.find('\n'), content.size());
    std::string_view line = content.substr(0, end);
    content.remove_prefix(std::min(end + 1, content.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty()) break;
    if (!first && (line.front() == ' ' || line.front() == '\t')) continue;
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !IsFieldName(line.substr(0, colon))) return false;
    hasReceiver = hasReceiver || IsReceiver(line.substr(0, colon));
  }
  return hasReceiver;
}

void KeepMessageFiles(const EmlCommand& command, const std::string& folder) {
  os::Files& files = os::RealFiles();
  std::vector<std::pair<std::string, std::string>> messages;  // path and content
  for (const std::string& path : FilesOf(command.path)) {
    std::string content;
    if (files.Read(path, kLargest, content) != os::FileOutcome::kOk) Fail("cannot read", path);
    if (!IsMessage(content)) Fail("this is no mail:", path);
    messages.emplace_back(path, std::move(content));
  }
  if (messages.empty()) Fail("there is no mail file", command.path);
  for (const auto& [path, content] : messages) {
    const std::string_view name = os::FileNameOf(path);
    KeepMessage(content, name.substr(0, name.rfind('.')), folder);
  }
  if (!command.doNotKeep) return;
  for (const auto& [path, content] : messages)
    if (files.Delete(path) != os::FileOutcome::kOk) Fail("it is filed, but cannot be removed:", path);
}

}  // namespace kova::companions
