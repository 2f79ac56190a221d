#include <algorithm>
#include <string>
#include <vector>

#include "platform/os/paths.h"
#include "platform/toollib/tools.h"

using kova::os::FileOutcome;
using kova::os::Files;
using kova::os::JoinPath;
using kova::os::PathKind;

namespace {

constexpr std::size_t kNoLimit = static_cast<std::size_t>(-2);

/// What a folder holds: paths below it, each folder before what is in it.
struct Content {
  std::vector<std::string> folders;
  std::vector<std::string> files;
};

FileOutcome Gather(Files& files, const std::string& top, const std::string& below, Content& content) {
  std::vector<std::string> names;
  FileOutcome outcome = files.List(JoinPath(top, below), names);
  if (outcome != FileOutcome::kOk) return outcome;
  for (const std::string& name : names) content.files.push_back(JoinPath(below, name));
  outcome = files.ListFolders(JoinPath(top, below), names);
  for (const std::string& name : names) {
    if (outcome != FileOutcome::kOk) return outcome;
    content.folders.push_back(JoinPath(below, name));
    outcome = Gather(files, top, content.folders.back(), content);
  }
  return outcome;
}

bool IsSame(Files& files, const std::string& a, const std::string& b) {
  std::string ofA, ofB;
  return files.Read(a, kNoLimit, ofA) == FileOutcome::kOk &&
         files.Read(b, kNoLimit, ofB) == FileOutcome::kOk && ofA == ofB;
}

class Copier {
 public:
  Copier(Files& files, int keep, std::string from, std::string to)
      : files_(files), keep_(keep), from_(std::move(from)), to_(std::move(to)) {}

  FileOutcome CopyAll(const Content& content, const CTools::Copying& how) {
    FileOutcome outcome = files_.MakeFolders(to_);
    for (const std::string& folder : content.folders) {
      if (outcome != FileOutcome::kOk) return outcome;
      outcome = files_.MakeFolder(JoinPath(to_, folder));
    }
    double done = 0;
    for (const std::string& file : content.files) {
      if (outcome != FileOutcome::kOk) return outcome;
      if (how.report && !how.report(done++ / static_cast<double>(content.files.size())))
        return FileOutcome::kBusy;
      outcome = CopyOne(file);
    }
    return outcome;
  }

  void TakeBack() {
    for (const std::string& file : made_) (void)files_.Delete(file);
  }

 private:
  FileOutcome CopyOne(const std::string& file) {
    const std::string source = JoinPath(from_, file);
    const std::string target = JoinPath(to_, file);
    if (keep_ == 0 && files_.Kind(target) == PathKind::kFile) {
      const FileOutcome removed = files_.Delete(target);
      if (removed != FileOutcome::kOk) return removed;
    }
    const FileOutcome outcome = files_.Copy(source, target);
    if (outcome == FileOutcome::kOk) made_.push_back(target);
    return outcome == FileOutcome::kChanged && IsSame(files_, source, target) ? FileOutcome::kOk : outcome;
  }

  Files& files_;
  int keep_;
  std::string from_;
  std::string to_;
  std::vector<std::string> made_;
};

}  // namespace

FileOutcome CTools::DirectoryCopy(Files& files, std::string_view from, std::string_view to, int keep,
                                  const Copying& how) {
  // Known before anything is made: the target may lie in the folder.
  Content content;
  FileOutcome outcome = Gather(files, std::string(from), {}, content);
  if (outcome != FileOutcome::kOk) return outcome;
  std::stable_partition(content.files.begin(), content.files.end(),
                        [&](const std::string& file) { return file != how.lastFile; });
  Copier copier(files, keep, std::string(from), std::string(to));
  outcome = copier.CopyAll(content, how);
  if (outcome != FileOutcome::kOk) copier.TakeBack();
  return outcome;
}
