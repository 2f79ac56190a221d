#include "platform/os/files.h"

#include <windows.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/os/paths.h"
#include "platform/os/win32/handle.h"
#include "platform/os/win32/native_path.h"
#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

constexpr DWORD kPause = 2;               // milliseconds
constexpr ULONGLONG kReadPatience = 200;  // another program's replacement or profile write takes less
constexpr ULONGLONG kMovePatience = 2000;

// The one place where this system's errors become ours.
FileOutcome OutcomeOf(DWORD error) {
  switch (error) {
    case ERROR_SUCCESS:
      return FileOutcome::kOk;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_NOT_READY:
    case ERROR_DIRECTORY:
      return FileOutcome::kNotThere;
    case ERROR_WRITE_PROTECT:
      return FileOutcome::kReadOnly;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return FileOutcome::kBusy;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return FileOutcome::kFull;
    default:
      return FileOutcome::kFailed;
  }
}

FileOutcome LastOutcome() { return OutcomeOf(GetLastError()); }

class Win32Lock final : public FileLock {
 public:
  explicit Win32Lock(Handle handle) : handle_(std::move(handle)) {}

 private:
  Handle handle_;
};

// Calls attempt() until it succeeds, fails for good, or has been refused by another program for `patience`
// ms. A file that is just being replaced can refuse access, too.
template <typename Attempt>
bool Retry(ULONGLONG patience, bool deniedCanPass, Attempt attempt) {
  const ULONGLONG end = GetTickCount64() + patience;
  while (!attempt()) {
    const DWORD error = GetLastError();
    const bool passing =
        OutcomeOf(error) == FileOutcome::kBusy || (deniedCanPass && error == ERROR_ACCESS_DENIED);
    if (!passing || GetTickCount64() >= end) {
      SetLastError(error);
      return false;
    }
    Sleep(kPause);
  }
  return true;
}

bool IsFolder(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

Handle OpenShared(const std::wstring& name) {
  HANDLE handle = INVALID_HANDLE_VALUE;
  const auto open = [&] {
    handle = CreateFileW(name.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return handle != INVALID_HANDLE_VALUE || IsFolder(GetFileAttributesW(name.c_str()));
  };
  if (!Retry(kReadPatience, true, open)) return Handle(INVALID_HANDLE_VALUE);
  if (handle == INVALID_HANDLE_VALUE) SetLastError(ERROR_ACCESS_DENIED);
  return Handle(handle);
}

class Search {
 public:
  explicit Search(const std::wstring& pattern) : handle_(FindFirstFileW(pattern.c_str(), &found_)) {}
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  ~Search() {
    if (Valid()) FindClose(handle_);
  }
  bool Valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  const WIN32_FIND_DATAW& Found() const { return found_; }
  bool Next() { return FindNextFileW(handle_, &found_) != 0; }

 private:
  WIN32_FIND_DATAW found_{};
  HANDLE handle_;
};

FileOutcome ReadUpTo(HANDLE file, std::size_t limit, std::string& content) {
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file, &size)) return LastOutcome();
  // One byte more than the file is said to have, so that the end shows.
  content.resize(std::min(static_cast<std::size_t>(size.QuadPart), limit) + 1);
  for (std::size_t filled = 0;;) {
    const auto room = static_cast<DWORD>(std::min<std::size_t>(content.size() - filled, 1u << 30));
    DWORD got = 0;
    if (!ReadFile(file, content.data() + filled, room, &got, nullptr)) {
      const FileOutcome outcome = LastOutcome();
      content.clear();
      return outcome;
    }
    filled += got;
    if (got < room || filled > limit) {
      content.resize(std::min(filled, limit));
      return filled > limit ? FileOutcome::kTooLarge : FileOutcome::kOk;
    }
    if (filled == content.size()) content.resize(filled + filled / 2 + 4096);
  }
}

FileOutcome WriteAll(HANDLE file, std::string_view content) {
  while (!content.empty()) {
    const auto part = static_cast<DWORD>(std::min<std::size_t>(content.size(), 1u << 30));
    DWORD put = 0;
    if (!WriteFile(file, content.data(), part, &put, nullptr)) return LastOutcome();
    if (put == 0) return FileOutcome::kFull;
    content.remove_prefix(put);
  }
  return FlushFileBuffers(file) ? FileOutcome::kOk : LastOutcome();
}

/// `disposition` is CREATE_ALWAYS or CREATE_NEW.
Handle OpenToWrite(const std::wstring& name, DWORD disposition) {
  return Handle(
      CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

FileOutcome WriteNew(const std::wstring& name, std::string_view content) {
  const Handle file = OpenToWrite(name, CREATE_ALWAYS);
  return file.Valid() ? WriteAll(file.Get(), content) : LastOutcome();
}

// What `name` leads to when it is a symbolic link, else itself; the link's own name where it leads nowhere.
std::wstring Resolved(const std::wstring& name, DWORD attributes) {
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return name;
  const Handle file(CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.Valid()) return name;
  std::wstring real(GetFinalPathNameByHandleW(file.Get(), nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(file.Get(), real.data(), static_cast<DWORD>(real.size()), FILE_NAME_NORMALIZED);
  if (length == 0 || length >= real.size()) return name;
  real.resize(length);
  return real;
}

// The file `name` in the folder of `path`.
std::wstring BesidePath(const std::wstring& path, const std::wstring& name) {
  return path.substr(0, path.rfind(L'\\') + 1) + name.substr(name.rfind(L'\\') + 1);
}

// Gives the file `to` the access list of `from`, and its owner where this user may. ReplaceFileW would, too, but takes
// two renamings: a power cut between them leaves no file of that name. A file system without access lists has none to keep.
void CopySecurity(const std::wstring& from, const std::wstring& to) {
  constexpr SECURITY_INFORMATION kWanted = DACL_SECURITY_INFORMATION | OWNER_SECURITY_INFORMATION;
  DWORD size = 0;
  GetFileSecurityW(from.c_str(), kWanted, nullptr, 0, &size);
  std::vector<char> bytes(size);
  auto* descriptor = reinterpret_cast<PSECURITY_DESCRIPTOR>(bytes.data());
  if (size == 0 || !GetFileSecurityW(from.c_str(), kWanted, descriptor, size, &size)) return;
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  // What was inherited goes on being so.
  if (GetSecurityDescriptorControl(descriptor, &control, &revision) && (control & SE_DACL_AUTO_INHERITED) != 0)
    SetSecurityDescriptorControl(descriptor, SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
  SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, descriptor);
  SetFileSecurityW(to.c_str(), OWNER_SECURITY_INFORMATION, descriptor);
}

bool IsTaken(DWORD error) { return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS; }

// Called first when the new file is there: from then on it is ours to remove.
DWORD CALLBACK NoteMade(LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, DWORD, DWORD, HANDLE,
                        HANDLE, LPVOID isMade) {
  *static_cast<bool*>(isMade) = true;
  return PROGRESS_CONTINUE;
}

// The files of a folder, or the folders.
FileOutcome ListKind(std::string_view folder, bool folders, std::vector<std::string>& names) {
  names.clear();
  if (!IsFolder(GetFileAttributesW(NativePath(folder).c_str()))) return FileOutcome::kNotThere;
  Search search(NativePath(JoinPath(folder, "*")));
  if (!search.Valid()) {
    // The root of an empty drive has not even "." in it.
    return GetLastError() == ERROR_FILE_NOT_FOUND ? FileOutcome::kOk : LastOutcome();
  }
  do {
    const std::wstring_view wide = search.Found().cFileName;
    std::string name;
    if (wide != L"." && wide != L".." && IsFolder(search.Found().dwFileAttributes) == folders &&
        text932::FromUtf16(std::u16string(wide.begin(), wide.end()), name))
      names.push_back(std::move(name));
  } while (search.Next());
  const DWORD error = GetLastError();
  if (error == ERROR_NO_MORE_FILES) return FileOutcome::kOk;
  names.clear();
  return OutcomeOf(error);
}

class Win32Files final : public Files {
 public:
  FileOutcome Read(std::string_view path, std::size_t limit, std::string& content) override {
    content.clear();
    const Handle file = OpenShared(NativePath(path));
    return file.Valid() ? ReadUpTo(file.Get(), limit, content) : LastOutcome();
  }

  PathKind Kind(std::string_view path) override {
    const DWORD attributes = GetFileAttributesW(NativePath(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return PathKind::kNothing;
    return IsFolder(attributes) ? PathKind::kFolder : PathKind::kFile;
  }

  FileOutcome LastWritten(std::string_view path, std::tm& local) override {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    SYSTEMTIME universal{}, here{};
    if (!GetFileAttributesExW(NativePath(path).c_str(), GetFileExInfoStandard, &data) ||
        !FileTimeToSystemTime(&data.ftLastWriteTime, &universal) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &here))
      return LastOutcome();
    local = {};
    local.tm_year = here.wYear - 1900;
    local.tm_mon = here.wMonth - 1;
    local.tm_mday = here.wDay;
    local.tm_hour = here.wHour;
    local.tm_min = here.wMinute;
    local.tm_sec = here.wSecond;
    return FileOutcome::kOk;
  }

  FileOutcome MakeFolder(std::string_view path) override {
    if (CreateDirectoryW(NativePath(path).c_str(), nullptr)) return FileOutcome::kOk;
    const DWORD error = GetLastError();
    return Kind(path) == PathKind::kFolder ? FileOutcome::kOk : OutcomeOf(error);
  }

  FileOutcome List(std::string_view folder, std::vector<std::string>& names) override {
    return ListKind(folder, false, names);
  }

  FileOutcome ListFolders(std::string_view folder, std::vector<std::string>& names) override {
    return ListKind(folder, true, names);
  }

  FileOutcome Create(std::string_view path, std::string_view content) override {
    const std::wstring name = NativePath(path);
    FileOutcome outcome = FileOutcome::kOk;
    {
      const Handle file = OpenToWrite(name, CREATE_NEW);
      if (!file.Valid()) return IsTaken(GetLastError()) ? FileOutcome::kChanged : LastOutcome();
      outcome = WriteAll(file.Get(), content);
    }
    if (outcome != FileOutcome::kOk) DeleteFileW(name.c_str());
    return outcome;
  }

  FileOutcome Copy(std::string_view from, std::string_view to) override {
    const std::wstring target = NativePath(to);
    bool isMade = false;
    if (CopyFileExW(NativePath(from).c_str(), target.c_str(), &NoteMade, &isMade, nullptr,
                    COPY_FILE_FAIL_IF_EXISTS)) {
      const DWORD attributes = GetFileAttributesW(target.c_str());
      if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
        SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
      return FileOutcome::kOk;
    }
    const DWORD error = GetLastError();
    if (isMade) DeleteFileW(target.c_str());
    return IsTaken(error) ? FileOutcome::kChanged : OutcomeOf(error);
  }

  FileOutcome Delete(std::string_view path) override {
    const std::wstring name = NativePath(path);
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return LastOutcome();
    if (IsFolder(attributes)) return FileOutcome::kFailed;
    if (attributes & FILE_ATTRIBUTE_READONLY) return FileOutcome::kReadOnly;
    const auto remove = [&] { return DeleteFileW(name.c_str()) != 0; };
    return Retry(kMovePatience, true, remove) ? FileOutcome::kOk : LastOutcome();
  }

  FileOutcome Rename(std::string_view from, std::string_view to) override {
    const std::wstring source = NativePath(from);
    const std::wstring target = NativePath(to);
    const auto move = [&] {
      return MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
    };
    if (Retry(kMovePatience, true, move)) return FileOutcome::kOk;
    const DWORD error = GetLastError();
    return IsTaken(error) ? FileOutcome::kChanged : OutcomeOf(error);
  }

  FileOutcome ReplaceThrough(std::string_view beside, std::string_view path, std::string_view content,
                             const Precondition& precondition) override {
    const std::wstring named = NativePath(path);
    const DWORD attributes = GetFileAttributesW(named.c_str());
    const std::wstring target = Resolved(named, attributes);
    const std::wstring temporary = target == named ? NativePath(beside) : BesidePath(target, NativePath(beside));
    if (IsFolder(attributes)) return FileOutcome::kFailed;
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
      return FileOutcome::kReadOnly;

    FileOutcome outcome = WriteNew(temporary, content);
    if (outcome == FileOutcome::kBusy) return outcome;  // the file beside it is another's
    if (outcome == FileOutcome::kFailed && GetLastError() == ERROR_ACCESS_DENIED) return FileOutcome::kNoAccess;
    if (outcome == FileOutcome::kOk && attributes != INVALID_FILE_ATTRIBUTES) CopySecurity(target, temporary);
    if (outcome == FileOutcome::kOk) outcome = MoveOver(path, temporary, target, precondition);
    if (outcome != FileOutcome::kOk) DeleteFileW(temporary.c_str());
    return outcome;
  }

  FileOutcome WriteInPlace(std::string_view path, std::string_view content,
                           const Precondition& precondition) override {
    const std::wstring name = NativePath(path);
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (IsFolder(attributes)) return FileOutcome::kFailed;
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) return FileOutcome::kReadOnly;
    HANDLE handle = INVALID_HANDLE_VALUE;
    // Others may read it meanwhile, and neither write nor replace it.
    const auto open = [&] {
      handle = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
      return handle != INVALID_HANDLE_VALUE;
    };
    if (!Retry(kMovePatience, false, open))
      return GetLastError() == ERROR_ACCESS_DENIED ? FileOutcome::kNoAccess : LastOutcome();
    const Handle file(handle);
    if (!Holds(path, precondition)) return FileOutcome::kChanged;
    LARGE_INTEGER old{}, length{};
    length.QuadPart = static_cast<LONGLONG>(content.size());
    const auto setLength = [&](LARGE_INTEGER to) {
      return SetFilePointerEx(file.Get(), to, nullptr, FILE_BEGIN) && SetEndOfFile(file.Get());
    };
    // Room first: a disk that is full leaves the file as it was.
    if (!GetFileSizeEx(file.Get(), &old)) return LastOutcome();
    if (length.QuadPart > old.QuadPart && !setLength(length)) {
      const FileOutcome outcome = LastOutcome();
      setLength(old);
      return outcome;
    }
    if (!SetFilePointerEx(file.Get(), {}, nullptr, FILE_BEGIN)) return LastOutcome();
    const FileOutcome outcome = WriteAll(file.Get(), content);
    if (outcome != FileOutcome::kOk) return outcome;
    return setLength(length) && FlushFileBuffers(file.Get()) ? FileOutcome::kOk : LastOutcome();
  }

  FileOutcome Lock(std::string_view path, int patience, std::unique_ptr<FileLock>& lock) override {
    const std::wstring name = NativePath(path);
    HANDLE handle = INVALID_HANDLE_VALUE;
    // Open to nobody else: that also holds between machines, on a shared folder.
    const auto open = [&] {
      handle = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
      return handle != INVALID_HANDLE_VALUE;
    };
    if (!Retry(static_cast<ULONGLONG>(patience), false, open)) {
      if (GetLastError() != ERROR_ACCESS_DENIED) return LastOutcome();
      // Another user's may be read only: held alone, that locks as well.
      const auto openToRead = [&] {
        handle = CreateFileW(name.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        return handle != INVALID_HANDLE_VALUE;
      };
      if (!Retry(static_cast<ULONGLONG>(patience), false, openToRead)) {
        const FileOutcome outcome = LastOutcome();
        return outcome == FileOutcome::kBusy ? outcome : FileOutcome::kNoAccess;
      }
    }
    lock = std::make_unique<Win32Lock>(Handle(handle));
    return FileOutcome::kOk;
  }

 private:
  // Readers hold the target for moments; each attempt checks anew that it is what it was.
  FileOutcome MoveOver(std::string_view path, const std::wstring& temporary, const std::wstring& target,
                       const Precondition& precondition) {
    bool holds = true;
    const auto move = [&] {
      holds = Holds(path, precondition);
      return !holds || MoveFileExW(temporary.c_str(), target.c_str(),
                                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    };
    if (!Retry(kMovePatience, true, move))
      return GetLastError() == ERROR_ACCESS_DENIED ? FileOutcome::kNoAccess : LastOutcome();
    return holds ? FileOutcome::kOk : FileOutcome::kChanged;
  }
};

}  // namespace

Files& RealFiles() {
  static Win32Files files;
  return files;
}

}  // namespace kova::os
