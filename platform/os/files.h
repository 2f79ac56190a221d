#pragma once

// Files and folders as the library needs them. Paths are code page 932 text with "\" between the parts.

#include <cstddef>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kova::os {

enum class FileOutcome {
  kOk,
  kNotThere,  // no such file, or a folder on the way to it is missing
  kReadOnly,  // the target is marked read-only
  kBusy,      // another program holds it, longer than was waited for
  kChanged,   // it is no longer what the caller said it is; something is there already
  kTooLarge,  // larger than the caller's limit
  kFull,      // no room left on the disk
  kNoAccess,  // this user has no right to do that there
  kFailed,    // anything else; nothing was changed
};

enum class PathKind { kNothing, kFile, kFolder };

/// A held lock; destroying it releases it. It is also released when the process ends, however it ends.
class FileLock {
 public:
  FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  virtual ~FileLock() = default;
};

/// What a file must still hold for a replacement to go ahead. The views must outlive the call.
struct Precondition {
  enum class Kind { kNone, kNoFile, kContent };
  Kind kind = Kind::kNone;
  std::string_view content;

  static Precondition NoFile() { return {Kind::kNoFile, {}}; }
  static Precondition Content(std::string_view content) { return {Kind::kContent, content}; }
};

class Files {
 public:
  virtual ~Files() = default;

  /// The whole file in `content`. kTooLarge when it is larger than `limit` bytes; `content` then holds the
  /// first `limit` ones. On any other failure `content` is empty. A folder is kFailed or kNotThere. Others
  /// may read, write, replace and delete the file meanwhile.
  [[nodiscard]] virtual FileOutcome Read(std::string_view path, std::size_t limit, std::string& content) = 0;

  /// What is at `path`, with or without a delimiter at its end. kNothing also when it cannot be told.
  [[nodiscard]] virtual PathKind Kind(std::string_view path) = 0;

  /// Makes one folder in an existing one. kOk when it is there already.
  [[nodiscard]] virtual FileOutcome MakeFolder(std::string_view path) = 0;

  /// When the file at `path` was last written, in local time.
  [[nodiscard]] virtual FileOutcome LastWritten(std::string_view path, std::tm& local) = 0;

  /// The names of the files in a folder, without its folders, in the system's order (by name where a folder
  /// has none). A name that code page 932 cannot hold is left out. kNotThere without the folder; on any
  /// failure `names` is empty.
  [[nodiscard]] virtual FileOutcome List(std::string_view folder, std::vector<std::string>& names) = 0;

  /// The same of the folders in a folder.
  [[nodiscard]] virtual FileOutcome ListFolders(std::string_view folder, std::vector<std::string>& names) = 0;

  /// Makes a new file of those bytes, flushed. kChanged when that name is taken, and what has it stays; on
  /// any other failure there is no file of that name.
  [[nodiscard]] virtual FileOutcome Create(std::string_view path, std::string_view content) = 0;

  /// Makes the new file `to` with the bytes of `from`, as fast as the system can, so not flushed, and not
  /// read-only. Outcomes as of Create; kNotThere without `from` or the folder of `to`.
  [[nodiscard]] virtual FileOutcome Copy(std::string_view from, std::string_view to) = 0;

  /// Removes a file; waits shortly for one that others hold (kBusy). kReadOnly for one that is marked so,
  /// whoever asks. A folder is kFailed.
  [[nodiscard]] virtual FileOutcome Delete(std::string_view path) = 0;

  /// Gives the file `from` the name `to`, in one step and durably; a file that has that name already stays
  /// (kChanged). Both names are in the same folder. Waits shortly for a file that others hold (kBusy). Of two
  /// processes that rename the same file one is told kNotThere.
  [[nodiscard]] virtual FileOutcome Rename(std::string_view from, std::string_view to) = 0;

  /// Gives the file at `path` the bytes `content`, whole and durably: they are written to a file beside it
  /// (the name with ".new" behind it), flushed, and renamed over it. Whatever happens, power loss included,
  /// the file is the old one or the new one. A read-only file is left alone, whoever asks. `precondition` is
  /// checked last, right before the renaming (kChanged). Two processes that replace the same file at once do
  /// so under a lock of their own, or one of them may be told kBusy. A file that was there keeps its owner, as far
  /// as this user may give it, and its access list; of a symbolic link the file that it leads to is replaced.
  /// kNoAccess where no file can be made beside it.
  [[nodiscard]] FileOutcome Replace(std::string_view path, std::string_view content,
                                    const Precondition& precondition = {}) {
    return ReplaceThrough(std::string(path) + ".new", path, content, precondition);
  }

  /// The same with `temporary`, in the same folder, as the name of the file beside it: for files that another
  /// program picks up, which knows that name for an unfinished one. It is gone afterwards unless the system
  /// refuses to remove it.
  [[nodiscard]] virtual FileOutcome ReplaceThrough(std::string_view temporary, std::string_view path,
                                                   std::string_view content,
                                                   const Precondition& precondition = {}) = 0;

  /// Writes `content` into the file at `path`, which exists, and flushes it: for a folder in which this user may
  /// make no file. Nothing is written when the disk lacks the room; a power cut in between leaves it half written.
  /// `precondition` is checked while no other process can write the file this way or replace it.
  [[nodiscard]] virtual FileOutcome WriteInPlace(std::string_view path, std::string_view content,
                                                 const Precondition& precondition) = 0;

  /// Holds the lock that the file `path` stands for, making the file when it is missing (it stays). Waits for
  /// other processes at most `patience` milliseconds (kBusy). kNoAccess when it is missing and cannot be made.
  [[nodiscard]] virtual FileOutcome Lock(std::string_view path, int patience,
                                         std::unique_ptr<FileLock>& lock) = 0;

  /// Makes the folder `path` and every missing one above it. kOk when all are there.
  [[nodiscard]] FileOutcome MakeFolders(std::string_view path);

 protected:
  /// True when the file at `path` is as `precondition` says.
  [[nodiscard]] bool Holds(std::string_view path, const Precondition& precondition);
};

/// The machine's own files. It keeps no state.
Files& RealFiles();

}  // namespace kova::os
