#include "platform/os/profile_file.h"

#include "platform/os/profile_text.h"

namespace kova::os {
namespace {

constexpr int kPatience = 5000;  // milliseconds; longer than another writer retries while it holds the lock

}  // namespace

FileOutcome UpdateProfileFile(Files& files, std::string_view path, std::string_view section,
                              std::optional<std::string_view> key, std::optional<std::string_view> value,
                              RetryTiming& timing) {
  if (path.empty()) return FileOutcome::kNotThere;
  std::unique_ptr<FileLock> lock;
  const FileOutcome locked = files.Lock(std::string(path) + ".lock", kPatience, lock);
  // Without the right to make the lock's file there is none to make another one either: the writing in place below
  // compares under a lock of its own.
  if (locked != FileOutcome::kOk && locked != FileOutcome::kNoAccess) return locked;
  const auto attempt = [&] {
    std::string old;
    const FileOutcome read = files.Read(path, kProfileFileLimit, old);
    if (read != FileOutcome::kOk && read != FileOutcome::kNotThere) return read;
    const std::optional<std::string> edited = EditProfileText(old, section, key, value);
    if (!edited) return FileOutcome::kFailed;
    if (*edited == old) return FileOutcome::kOk;
    const bool there = read == FileOutcome::kOk;
    const Precondition unchanged = there ? Precondition::Content(old) : Precondition::NoFile();
    FileOutcome outcome =
        locked == FileOutcome::kNoAccess ? FileOutcome::kNoAccess : files.Replace(path, *edited, unchanged);
    if (outcome == FileOutcome::kNoAccess && there) outcome = files.WriteInPlace(path, *edited, unchanged);
    return outcome;
  };
  // Against a program that writes without our lock.
  return RetryWhile(
      attempt, [](FileOutcome outcome) { return outcome == FileOutcome::kChanged; }, timing);
}

FileOutcome ReadProfileFile(Files& files, std::string_view path, std::string& content) {
  content.clear();
  const FileOutcome read = path.empty() ? FileOutcome::kNotThere : files.Read(path, kProfileFileLimit, content);
  if (read != FileOutcome::kOk) content.clear();
  return read;
}

}  // namespace kova::os
