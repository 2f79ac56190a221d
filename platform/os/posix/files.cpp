#include "platform/os/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>
#include <vector>

#include "platform/os/posix/native_path.h"

namespace kova::os {
namespace {

constexpr timespec kPause{0, 1'000'000};

// The one place where this system's errors become ours.
FileOutcome OutcomeOf(int error) {
  switch (error) {
    case 0:
      return FileOutcome::kOk;
    case ENOENT:
    case ENOTDIR:
      return FileOutcome::kNotThere;
    case EROFS:
      return FileOutcome::kReadOnly;
    case EWOULDBLOCK:
    case EBUSY:
      return FileOutcome::kBusy;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return FileOutcome::kFull;
    default:
      return FileOutcome::kFailed;
  }
}

std::int64_t Milliseconds() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int Get() const { return fd_; }
  bool Valid() const { return fd_ >= 0; }

 private:
  int fd_;
};

class PosixLock final : public FileLock {
 public:
  explicit PosixLock(int fd) : descriptor_(fd) {}
  int Get() const { return descriptor_.Get(); }

 private:
  Descriptor descriptor_;
};

FileOutcome ReadUpTo(int fd, std::size_t limit, std::string& content) {
  struct stat status {};
  if (::fstat(fd, &status) != 0) return OutcomeOf(errno);
  if (S_ISDIR(status.st_mode)) return FileOutcome::kFailed;
  // One byte more than the file is said to have, so that the end shows in the first read.
  const std::size_t expected = status.st_size > 0 ? static_cast<std::size_t>(status.st_size) : 0;
  content.resize((expected < limit ? expected : limit) + 1);
  for (std::size_t filled = 0;;) {
    const ssize_t got = ::read(fd, content.data() + filled, content.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      const int error = got < 0 ? errno : 0;
      content.resize(error == 0 ? filled : 0);
      return OutcomeOf(error);
    }
    filled += static_cast<std::size_t>(got);
    if (filled > limit) {
      content.resize(limit);
      return FileOutcome::kTooLarge;
    }
    if (filled == expected) {
      content.resize(filled);
      return FileOutcome::kOk;
    }
    if (filled == content.size()) content.resize(filled + filled / 2 + 4096);
  }
}

FileOutcome WriteBytes(int fd, std::string_view content) {
  while (!content.empty()) {
    const ssize_t put = ::write(fd, content.data(), content.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return OutcomeOf(errno);
    content.remove_prefix(static_cast<std::size_t>(put));
  }
  return FileOutcome::kOk;
}

FileOutcome WriteAll(int fd, std::string_view content) {
  const FileOutcome written = WriteBytes(fd, content);
  if (written != FileOutcome::kOk) return written;
  return ::fsync(fd) == 0 ? FileOutcome::kOk : OutcomeOf(errno);
}

FileOutcome CopyAll(int from, int to) {
  std::vector<char> buffer(1 << 18);
  for (;;) {
    const ssize_t got = ::read(from, buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0 ? FileOutcome::kOk : OutcomeOf(errno);
    const FileOutcome written = WriteBytes(to, {buffer.data(), static_cast<std::size_t>(got)});
    if (written != FileOutcome::kOk) return written;
  }
}

// The folder's entry is what makes a renaming last.
void FlushFolder(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.Valid()) ::fsync(descriptor.Get());
}

// What `path` leads to when it is a symbolic link to something, else itself.
std::string Resolved(const std::string& path) {
  struct stat named {};
  if (::lstat(path.c_str(), &named) != 0 || !S_ISLNK(named.st_mode)) return path;
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real == nullptr ? path : std::string(real.get());
}

// The file `name` in the folder of `path`; both with "/".
std::string BesidePath(const std::string& path, const std::string& name) {
  return path.substr(0, path.rfind('/') + 1) + name.substr(name.rfind('/') + 1);
}

bool IsRefused(int error) { return error == EACCES || error == EPERM || error == EISDIR; }

// True when the descriptor's file is still the one at `path`, not one that was renamed or removed meanwhile.
bool IsAt(int fd, const std::string& path) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(fd, &opened) == 0 && ::stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
         opened.st_dev == named.st_dev;
}

// The files of a folder, or the folders.
FileOutcome ListKind(std::string_view folder, bool folders, std::vector<std::string>& names) {
  names.clear();
  const std::string path = NativePath(folder);
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(path.c_str()), &::closedir);
  if (!stream) return OutcomeOf(errno);
  const auto isFolder = [&](const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return entry.d_type == DT_DIR;
    struct stat status {};
    return ::fstatat(::dirfd(stream.get()), entry.d_name, &status, 0) != 0 || S_ISDIR(status.st_mode);
  };
  errno = 0;
  while (const dirent* entry = ::readdir(stream.get())) {
    std::string name;
    const std::string_view native = entry->d_name;
    if (native != "." && native != ".." && isFolder(*entry) == folders && text932::FromUtf8(native, name))
      names.push_back(std::move(name));
    errno = 0;
  }
  const int error = errno;
  if (error != 0) names.clear();
  std::sort(names.begin(), names.end());
  return OutcomeOf(error);
}

// Makes a new file that `fill` writes into; without it nothing is left.
template <typename Fill>
FileOutcome MakeNew(std::string_view path, Fill fill) {
  const std::string name = NativePath(path);
  const Descriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file.Valid()) return errno == EEXIST ? FileOutcome::kChanged : OutcomeOf(errno);
  const FileOutcome outcome = fill(file.Get());
  if (outcome != FileOutcome::kOk) ::unlink(name.c_str());
  return outcome;
}

class PosixFiles final : public Files {
 public:
  FileOutcome Read(std::string_view path, std::size_t limit, std::string& content) override {
    content.clear();
    const Descriptor descriptor(::open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC));
    if (!descriptor.Valid()) return OutcomeOf(errno);
    return ReadUpTo(descriptor.Get(), limit, content);
  }

  PathKind Kind(std::string_view path) override {
    struct stat status {};
    if (::stat(NativePath(path).c_str(), &status) != 0) return PathKind::kNothing;
    return S_ISDIR(status.st_mode) ? PathKind::kFolder : PathKind::kFile;
  }

  FileOutcome LastWritten(std::string_view path, std::tm& local) override {
    struct stat status {};
    if (::stat(NativePath(path).c_str(), &status) != 0) return OutcomeOf(errno);
    return ::localtime_r(&status.st_mtime, &local) != nullptr ? FileOutcome::kOk : FileOutcome::kFailed;
  }

  FileOutcome MakeFolder(std::string_view path) override {
    if (::mkdir(NativePath(path).c_str(), 0777) == 0) return FileOutcome::kOk;
    const int error = errno;
    return error == EEXIST && Kind(path) == PathKind::kFolder ? FileOutcome::kOk : OutcomeOf(error);
  }

  FileOutcome List(std::string_view folder, std::vector<std::string>& names) override {
    return ListKind(folder, false, names);
  }

  FileOutcome ListFolders(std::string_view folder, std::vector<std::string>& names) override {
    return ListKind(folder, true, names);
  }

  FileOutcome Create(std::string_view path, std::string_view content) override {
    return MakeNew(path, [&](int fd) { return WriteAll(fd, content); });
  }

  FileOutcome Copy(std::string_view from, std::string_view to) override {
    const Descriptor source(::open(NativePath(from).c_str(), O_RDONLY | O_CLOEXEC));
    if (!source.Valid()) return OutcomeOf(errno);
    return MakeNew(to, [&](int fd) { return CopyAll(source.Get(), fd); });
  }

  FileOutcome Delete(std::string_view path) override {
    const std::string name = NativePath(path);
    struct stat status {};
    if (::lstat(name.c_str(), &status) != 0) return OutcomeOf(errno);
    if (S_ISREG(status.st_mode) && (status.st_mode & 0222) == 0) return FileOutcome::kReadOnly;
    if (::unlink(name.c_str()) != 0) return OutcomeOf(errno);
    FlushFolder(name);
    return FileOutcome::kOk;
  }

  FileOutcome Rename(std::string_view from, std::string_view to) override {
    const std::string source = NativePath(from);
    const std::string target = NativePath(to);
    int error =
        ::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
    if (error == EINVAL || error == ENOSYS) {  // a file system that cannot rename so
      if (Kind(to) != PathKind::kNothing) return FileOutcome::kChanged;
      error = ::rename(source.c_str(), target.c_str()) == 0 ? 0 : errno;
    }
    if (error == EEXIST) return FileOutcome::kChanged;
    if (error == 0) FlushFolder(target);
    return OutcomeOf(error);
  }

  FileOutcome ReplaceThrough(std::string_view beside, std::string_view path, std::string_view content,
                             const Precondition& precondition) override {
    const std::string named = NativePath(path);
    const std::string target = Resolved(named);
    const std::string temporary = target == named ? NativePath(beside) : BesidePath(target, NativePath(beside));
    struct stat old {};
    const bool there = ::stat(target.c_str(), &old) == 0;
    if (there && !S_ISREG(old.st_mode)) return FileOutcome::kFailed;
    if (there && (old.st_mode & 0222) == 0)
      return FileOutcome::kReadOnly;  // root could write it; it must not

    const Descriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.Valid()) return IsRefused(errno) ? FileOutcome::kNoAccess : OutcomeOf(errno);
    if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return OutcomeOf(errno);
    if (!IsAt(file.Get(), temporary)) return FileOutcome::kBusy;
    FileOutcome outcome = ::ftruncate(file.Get(), 0) == 0 ? WriteAll(file.Get(), content) : OutcomeOf(errno);
    // Another owner only where this user may give a file away; before the mode, which it takes bits from.
    if (outcome == FileOutcome::kOk && there) (void)!::fchown(file.Get(), old.st_uid, old.st_gid);
    if (outcome == FileOutcome::kOk && there && ::fchmod(file.Get(), old.st_mode & 07777) != 0) {
      outcome = OutcomeOf(errno);
    }
    if (outcome == FileOutcome::kOk && !Holds(path, precondition)) outcome = FileOutcome::kChanged;
    if (outcome == FileOutcome::kOk && ::rename(temporary.c_str(), target.c_str()) != 0)
      outcome = OutcomeOf(errno);
    if (outcome != FileOutcome::kOk) {
      ::unlink(temporary.c_str());
      return outcome;
    }
    FlushFolder(target);
    return FileOutcome::kOk;
  }

  FileOutcome WriteInPlace(std::string_view path, std::string_view content,
                           const Precondition& precondition) override {
    const std::string target = NativePath(path);
    const Descriptor file(::open(target.c_str(), O_RDWR | O_CLOEXEC));
    if (!file.Valid()) return IsRefused(errno) ? FileOutcome::kNoAccess : OutcomeOf(errno);
    struct stat old {};
    if (::flock(file.Get(), LOCK_EX) != 0 || ::fstat(file.Get(), &old) != 0) return OutcomeOf(errno);
    if (!S_ISREG(old.st_mode)) return FileOutcome::kFailed;
    if ((old.st_mode & 0222) == 0) return FileOutcome::kReadOnly;
    if (!IsAt(file.Get(), target) || !Holds(path, precondition)) return FileOutcome::kChanged;
    const auto length = static_cast<off_t>(content.size());
    if (length > old.st_size) {
      const int error = ::posix_fallocate(file.Get(), old.st_size, length - old.st_size);
      if (error != 0) {
        (void)!::ftruncate(file.Get(), old.st_size);
        return OutcomeOf(error);
      }
    }
    const FileOutcome outcome = WriteAll(file.Get(), content);
    if (outcome != FileOutcome::kOk) return outcome;
    return ::ftruncate(file.Get(), length) == 0 && ::fsync(file.Get()) == 0 ? FileOutcome::kOk : OutcomeOf(errno);
  }

  FileOutcome Lock(std::string_view path, int patience, std::unique_ptr<FileLock>& lock) override {
    const std::string name = NativePath(path);
    int fd = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0 && errno == EACCES) fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);  // made by another user
    if (fd < 0) return IsRefused(errno) ? FileOutcome::kNoAccess : OutcomeOf(errno);
    auto held = std::make_unique<PosixLock>(fd);
    const std::int64_t end = Milliseconds() + patience;
    while (::flock(held->Get(), LOCK_EX | LOCK_NB) != 0) {
      if (errno != EWOULDBLOCK && errno != EINTR) return OutcomeOf(errno);
      if (Milliseconds() >= end) return FileOutcome::kBusy;
      ::nanosleep(&kPause, nullptr);
    }
    lock = std::move(held);
    return FileOutcome::kOk;
  }
};

}  // namespace

Files& RealFiles() {
  static PosixFiles files;
  return files;
}

}  // namespace kova::os
