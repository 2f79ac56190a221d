#include "platform/os/files.h"

#include "platform/os/paths.h"

namespace kova::os {

FileOutcome Files::MakeFolders(std::string_view path) {
  if (path.empty()) return FileOutcome::kNotThere;
  if (Kind(path) == PathKind::kFolder) return FileOutcome::kOk;
  const std::string_view parent = ParentFolderOf(path);
  if (!parent.empty() && parent.size() < path.size()) {
    const FileOutcome above = MakeFolders(parent);
    if (above != FileOutcome::kOk) return above;
  }
  return MakeFolder(path);
}

bool Files::Holds(std::string_view path, const Precondition& precondition) {
  if (precondition.kind == Precondition::Kind::kNone) return true;
  if (precondition.kind == Precondition::Kind::kNoFile) return Kind(path) == PathKind::kNothing;
  std::string content;
  return Read(path, precondition.content.size(), content) == FileOutcome::kOk &&
         content == precondition.content;
}

}  // namespace kova::os
