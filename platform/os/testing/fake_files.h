#pragma once

// Files in memory that can be made to fail, for tests of what stands on Files.

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/os/application_profile.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"

namespace kova::os::testing {

enum class FakeStep { kNone, kRead, kMakeFolder, kWrite, kRename, kLock, kList, kDelete, kMove };

class FakeFiles final : public Files {
 public:
  std::map<std::string, std::string, std::less<>> contents;  // by full name
  std::set<std::string, std::less<>> folders;                // without delimiter at the end
  std::set<std::string, std::less<>> readOnly;
  FakeStep failing = FakeStep::kNone;          // this step fails ...
  FileOutcome failure = FileOutcome::kFailed;  // ... with this outcome
  std::function<void()> beforeRename = [] {};  // another program's doing in between
  std::vector<std::string> temporaries;        // names that content was written to before it was renamed
  std::tm writtenOn{};  // of every file
  int writesBeforeFailure = 0;                 // new files that are still made where writing fails
  int reads = 0;
  int questions = 0;  // times that Kind was asked
  int locksHeld = 0;

  FileOutcome Read(std::string_view path, std::size_t limit, std::string& content) override {
    ++reads;
    content.clear();
    if (failing == FakeStep::kRead) return failure;
    const auto found = contents.find(path);
    if (found == contents.end()) return FileOutcome::kNotThere;
    content = found->second.substr(0, limit);
    return found->second.size() > limit ? FileOutcome::kTooLarge : FileOutcome::kOk;
  }

  PathKind Kind(std::string_view path) override {
    ++questions;
    if (folders.contains(DropTrailingDelimiter(path))) return PathKind::kFolder;
    return contents.contains(path) ? PathKind::kFile : PathKind::kNothing;
  }

  FileOutcome LastWritten(std::string_view path, std::tm& local) override {
    if (failing == FakeStep::kRead) return failure;
    local = writtenOn;
    return contents.contains(path) ? FileOutcome::kOk : FileOutcome::kNotThere;
  }

  FileOutcome MakeFolder(std::string_view path) override {
    if (failing == FakeStep::kMakeFolder) return failure;
    folders.emplace(DropTrailingDelimiter(path));
    return FileOutcome::kOk;
  }

  FileOutcome List(std::string_view folder, std::vector<std::string>& names) override {
    names.clear();
    if (failing == FakeStep::kList) return failure;
    if (Kind(folder) != PathKind::kFolder) return FileOutcome::kNotThere;
    const std::string in = JoinPath(folder, "");
    for (const auto& [path, content] : contents) {
      if (FolderOf(path) == in) names.emplace_back(FileNameOf(path));
    }
    return FileOutcome::kOk;
  }

  FileOutcome ListFolders(std::string_view folder, std::vector<std::string>& names) override {
    names.clear();
    if (failing == FakeStep::kList) return failure;
    if (Kind(folder) != PathKind::kFolder) return FileOutcome::kNotThere;
    const std::string in = JoinPath(folder, "");
    for (const std::string& each : folders) {
      if (FolderOf(each) == in) names.emplace_back(FileNameOf(each));
    }
    return FileOutcome::kOk;
  }

  FileOutcome Create(std::string_view path, std::string_view content) override {
    if (failing == FakeStep::kWrite && --writesBeforeFailure < 0) return failure;
    if (Kind(path) != PathKind::kNothing) return FileOutcome::kChanged;
    if (Kind(FolderOf(path)) != PathKind::kFolder) return FileOutcome::kNotThere;
    contents[std::string(path)] = content;
    temporaries.emplace_back(path);
    return FileOutcome::kOk;
  }

  FileOutcome Copy(std::string_view from, std::string_view to) override {
    const auto found = contents.find(from);
    return found == contents.end() ? FileOutcome::kNotThere : Create(to, std::string(found->second));
  }

  FileOutcome Delete(std::string_view path) override {
    if (readOnly.contains(path)) return FileOutcome::kReadOnly;
    if (failing == FakeStep::kDelete) return failure;
    const auto found = contents.find(path);
    if (found == contents.end()) return FileOutcome::kNotThere;
    contents.erase(found);
    return FileOutcome::kOk;
  }

  FileOutcome Rename(std::string_view from, std::string_view to) override {
    if (failing == FakeStep::kMove) return failure;
    beforeRename();
    if (Kind(to) != PathKind::kNothing) return FileOutcome::kChanged;
    auto moved = contents.extract(std::string(from));
    if (moved.empty()) return FileOutcome::kNotThere;
    moved.key() = to;
    contents.insert(std::move(moved));
    return FileOutcome::kOk;
  }

  FileOutcome ReplaceThrough(std::string_view temporary, std::string_view path, std::string_view content,
                             const Precondition& precondition) override {
    temporaries.emplace_back(temporary);
    if (readOnly.contains(path)) return FileOutcome::kReadOnly;
    if (failing == FakeStep::kWrite) return failure;
    beforeRename();
    if (!Holds(path, precondition)) return FileOutcome::kChanged;
    if (failing == FakeStep::kRename) return failure;
    contents[std::string(path)] = content;
    return FileOutcome::kOk;
  }

  FileOutcome WriteInPlace(std::string_view path, std::string_view content, const Precondition& precondition) override {
    if (!contents.contains(path)) return FileOutcome::kNotThere;
    if (!Holds(path, precondition)) return FileOutcome::kChanged;
    contents[std::string(path)] = content;
    return FileOutcome::kOk;
  }

  FileOutcome Lock(std::string_view, int, std::unique_ptr<FileLock>& lock) override {
    if (failing == FakeStep::kLock) return failure;
    lock = std::make_unique<Held>(*this);
    return FileOutcome::kOk;
  }

 private:
  struct Held final : FileLock {
    explicit Held(FakeFiles& owner) : files(owner) { ++files.locksHeld; }
    ~Held() override { --files.locksHeld; }
    FakeFiles& files;
  };
};

/// A profile in memory, keys written as "SECTION/KEY".
class FakeProfile final : public ApplicationProfile {
 public:
  std::map<std::string, std::string> values;

  std::string GetString(std::string_view section, std::string_view key,
                        std::string_view defaultValue) const override {
    const auto found = values.find(Name(section, key));
    return found == values.end() ? std::string(defaultValue) : found->second;
  }
  std::int32_t GetInt(std::string_view section, std::string_view key,
                      std::int32_t defaultValue) const override {
    const auto found = values.find(Name(section, key));
    return found == values.end() ? defaultValue : std::stoi(found->second);
  }
  bool WriteString(std::string_view section, std::string_view key, std::string_view value) override {
    values[Name(section, key)] = value;
    return true;
  }
  bool WriteInt(std::string_view section, std::string_view key, std::int32_t value) override {
    return WriteString(section, key, std::to_string(value));
  }

 private:
  static std::string Name(std::string_view section, std::string_view key) {
    return std::string(section) + "/" + std::string(key);
  }
};

}  // namespace kova::os::testing
