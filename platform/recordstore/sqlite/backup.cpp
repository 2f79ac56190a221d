#include "platform/recordstore/sqlite/backup.h"

#include <cstdio>
#include <filesystem>
#include <optional>

#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/paths.h"
#include "platform/recordstore/sqlite/database_file.h"
#include "platform/recordstore/sqlite/sqlite_engine.h"
#include "platform/text932/cp932.h"

namespace kova::store {
namespace {

constexpr int kPagesAtOnce = 512;
constexpr int kPause = 5;                      // ms between them, for those who wait for a lock or the disk
constexpr std::int64_t kPatience = 2 * 60000;  // ms, where every write of another begins the copy anew
constexpr std::string_view kTemplates = "templates";

Result Fail(Result result, std::string line, std::string& problem) {
  problem = std::move(line);
  return result;
}

std::string Utf8(std::string_view path) { return text932::ToUtf8(path); }

/// Copies all pages. In write-ahead mode `source` holds a read transaction, so that they are of one moment.
Result CopyPages(sqlite3* source, sqlite3* copy, bool isOneMoment, const std::function<bool()>& goOn, std::string& problem) {
  sqlite3_backup* const backup = sqlite3_backup_init(copy, "main", source, "main");
  if (backup == nullptr) return FromSqlite(sqlite3_errcode(copy));
  const std::int64_t begin = os::MonotonicMilliseconds();
  int code = SQLITE_OK;
  std::optional<Result> stopped;
  while (!stopped && (code == SQLITE_OK || code == SQLITE_BUSY || code == SQLITE_LOCKED)) {
    if (!goOn()) {
      stopped = Fail(Result::kBusy, "the backup was stopped", problem);
      break;
    }
    code = sqlite3_backup_step(backup, kPagesAtOnce) & 0xFF;
    if (code == SQLITE_DONE) break;
    if (!isOneMoment && os::MonotonicMilliseconds() - begin > kPatience)
      stopped = Fail(Result::kBusy, "the database is written to too often to be copied now", problem);
    os::SleepMilliseconds(kPause);
  }
  const int finished = sqlite3_backup_finish(backup);
  if (stopped) return *stopped;
  return code == SQLITE_DONE ? FromSqlite(finished) : FromSqlite(code);
}

/// The pages are sound and the file needs no other one beside it.
Result CheckWhole(sqlite3* connection, std::string& problem) {
  std::string value;
  Result result = QueryText(connection, "PRAGMA journal_mode = DELETE", value);
  if (result == Result::kDone && value != "delete") result = Result::kBusy;
  if (result == Result::kDone) result = QueryText(connection, "PRAGMA integrity_check(1)", value);
  if (result == Result::kDone && value != "ok") return Fail(Result::kDamaged, std::move(value), problem);
  return result;
}

std::string CountSql(const TableDef& table) { return "SELECT COUNT(*) FROM " + std::string(table.name); }

std::string StampSql(const TableDef& table) {
  return "SELECT stamp FROM change_stamp WHERE tableName = '" + std::string(table.name) + "'";
}

/// The copy has each table as the source has it, or, where somebody wrote since, as it was.
Result Compare(sqlite3* source, sqlite3* copy, std::string& problem) {
  for (const TableDef& table : AllTables()) {
    std::string stamps[2], counts[2];
    for (const int i : {0, 1}) {
      sqlite3* const each = i == 0 ? source : copy;
      Result result = QueryText(each, StampSql(table).c_str(), stamps[i]);
      if (result == Result::kDone) result = QueryText(each, CountSql(table).c_str(), counts[i]);
      if (result != Result::kDone) return result;
    }
    const bool isOlder = std::stoll(stamps[1]) < std::stoll(stamps[0]);
    if (stamps[0] == stamps[1] ? counts[0] != counts[1] : !isOlder)
      return Fail(Result::kDamaged, std::string(table.name) + ": the copy is not as the database", problem);
  }
  return Result::kDone;
}

Result BackUpFile(std::string_view folder, const std::filesystem::path& to, const std::function<bool()>& goOn,
                  std::string& problem) {
  int code = SQLITE_OK;
  const Connection source = Connect(InFolder(folder, kDatabaseFile), SQLITE_OPEN_READWRITE, code);
  Result result = FromSqlite(code);
  std::string mode;
  if (result == Result::kDone) result = QueryText(source.get(), "PRAGMA journal_mode", mode);
  const bool isOneMoment = mode == "wal";
  // Holding a read transaction keeps nobody from writing in write-ahead mode; in the other one it would.
  if (result == Result::kDone && isOneMoment) result = Execute(source.get(), "BEGIN; SELECT COUNT(*) FROM store_info");
  if (result != Result::kDone) return result;
  const Connection copy = Connect(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, code);
  result = FromSqlite(code);
  if (result == Result::kDone) result = CopyPages(source.get(), copy.get(), isOneMoment, goOn, problem);
  if (result == Result::kDone) result = CheckWhole(copy.get(), problem);
  if (result == Result::kDone && !isOneMoment) result = Execute(source.get(), "BEGIN; SELECT COUNT(*) FROM store_info");
  if (result == Result::kDone) result = Compare(source.get(), copy.get(), problem);
  return result;
}

bool BelongsToTheDatabase(std::string_view name) {
  return name.starts_with("kova.") || name == kMarkerFile;
}

/// The files of a folder that are not in another one yet.
Result CopyMissing(std::string_view from, std::string_view to, std::string& problem) {
  os::Files& files = os::RealFiles();
  std::vector<std::string> names;
  const os::FileOutcome listed = files.List(from, names);
  if (listed == os::FileOutcome::kNotThere) return Result::kDone;
  if (listed != os::FileOutcome::kOk) return Fail(Result::kFailed, "cannot list " + Utf8(from), problem);
  if (files.MakeFolders(to) != os::FileOutcome::kOk) return Fail(Result::kReadOnly, "cannot make " + Utf8(to), problem);
  for (const std::string& name : names) {
    if (BelongsToTheDatabase(name) || name.ends_with(".lock")) continue;
    const os::FileOutcome copied = files.Copy(os::JoinPath(from, name), os::JoinPath(to, name));
    if (copied != os::FileOutcome::kOk && copied != os::FileOutcome::kChanged && copied != os::FileOutcome::kNotThere)
      return Fail(copied == os::FileOutcome::kFull ? Result::kFull : Result::kFailed, "cannot copy " + Utf8(name), problem);
  }
  return Result::kDone;
}

/// Removes a folder that is not finished, unless it was kept.
class Unfinished {
 public:
  explicit Unfinished(std::filesystem::path folder) : folder_(std::move(folder)) {}
  ~Unfinished() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

 private:
  std::filesystem::path folder_;
};

/// Takes the database file with what belongs to it at this moment, as bytes.
Result TakeFiles(std::string_view from, std::string_view to, std::string& problem) {
  for (const char* behind : {"", "-wal", "-journal"}) {
    const std::string name = std::string(kDatabaseFile) + behind;
    const os::FileOutcome copied = os::RealFiles().Copy(os::JoinPath(from, name), os::JoinPath(to, name));
    if (copied == os::FileOutcome::kOk || (copied == os::FileOutcome::kNotThere && behind[0] != '\0')) continue;
    return Fail(copied == os::FileOutcome::kNotThere ? Result::kNoDatabase : Result::kFailed,
                "cannot copy " + Utf8(os::JoinPath(from, name)), problem);
  }
  return Result::kDone;
}

/// Leaves the database of a folder in one file that nobody has open; kDamaged for one that cannot be opened any more.
Result CloseForAll(std::string_view folder) {
  int code = SQLITE_OK, version = 0;
  const Connection connection = Connect(InFolder(folder, kDatabaseFile), SQLITE_OPEN_READWRITE, code);
  Result result = FromSqlite(code);
  std::string mode;
  if (result == Result::kDone) result = Execute(connection.get(), "PRAGMA locking_mode = EXCLUSIVE");
  if (result == Result::kDone) result = CheckVersion(connection.get(), version);
  if (result == Result::kOldVersion || result == Result::kWrongVersion) result = Result::kDone;
  if (result == Result::kDone) result = QueryText(connection.get(), "PRAGMA journal_mode = DELETE", mode);
  if (result == Result::kDone && mode != "delete") result = Result::kBusy;
  if (result == Result::kDone) result = Execute(connection.get(), "BEGIN EXCLUSIVE; COMMIT");
  return result;
}

/// Brings the backup's database, whole and checked, into a file of `folder`.
Result Stage(std::string_view backup, std::string_view folder, const std::filesystem::path& to, std::string& problem) {
  const std::string here = os::JoinPath(folder, "kova.restoring");
  const Unfinished unfinished(os::ToFilesystemPath(here));
  std::error_code error;
  std::filesystem::remove_all(os::ToFilesystemPath(here), error);  // of a restore that was cut short
  if (os::RealFiles().MakeFolders(here) != os::FileOutcome::kOk)
    return Fail(Result::kReadOnly, "cannot make " + Utf8(here), problem);
  Result result = TakeFiles(backup, here, problem);
  if (result != Result::kDone) return result;
  int code = SQLITE_OK, version = 0;
  const Connection staged = Connect(InFolder(here, kDatabaseFile), SQLITE_OPEN_READWRITE, code);
  result = FromSqlite(code);
  if (result == Result::kDone) result = CheckVersion(staged.get(), version);
  if (result == Result::kOldVersion) result = Result::kDone;  // who opens it upgrades it
  if (result == Result::kDone) result = CheckWhole(staged.get(), problem);
  if (result == Result::kDone) result = CopyDatabase(staged.get(), to);
  if (result != Result::kDone && problem.empty()) problem = "the backup cannot be used";
  return result;
}

/// Copies what is in `folder` now into a new folder in it.
Result KeepOld(std::string_view folder, std::string& kept, std::string& problem) {
  kept = os::JoinPath(folder, NameOfNow("kova-before-"));
  if (os::RealFiles().Kind(kept) != os::PathKind::kNothing || os::RealFiles().MakeFolder(kept) != os::FileOutcome::kOk)
    return Fail(Result::kReadOnly, "cannot make " + Utf8(kept), problem);
  Result result = TakeFiles(folder, kept, problem);
  if (result == Result::kDone && !WriteMarker(InFolder(kept, kMarkerFile))) result = Result::kFull;
  return result;
}

}  // namespace

std::string NameOfNow(const char* beginning) {
  const std::tm now = os::LocalTime();
  char text[100];
  std::snprintf(text, sizeof text, "%s%04d%02d%02d-%02d%02d%02d", beginning, now.tm_year + 1900, now.tm_mon + 1,
                now.tm_mday, now.tm_hour, now.tm_min, now.tm_sec);
  return text;
}

Result CopyOtherFiles(std::string_view from, std::string_view to, std::string& problem) {
  const Result result = CopyMissing(from, to, problem);
  return result == Result::kDone ? CopyMissing(os::JoinPath(from, kTemplates), os::JoinPath(to, kTemplates), problem) : result;
}

Result BackUpSqlite(std::string_view folder, bool overNetwork, std::string_view to, const std::function<bool()>& goOn,
                    std::string& problem) {
  if (os::RealFiles().Kind(to) != os::PathKind::kNothing) return Fail(Result::kDuplicate, Utf8(to) + " is there already", problem);
  // Whoever opens it brings it to this layout and decides how it is shared.
  Result result = Result::kFailed;
  const std::unique_ptr<Engine> engine = OpenSqliteEngine(folder, overNetwork, result);
  if (engine == nullptr) return result;
  const std::string part = std::string(os::DropTrailingDelimiter(to)) + ".part";
  std::error_code error;
  std::filesystem::remove_all(os::ToFilesystemPath(part), error);
  const Unfinished unfinished(os::ToFilesystemPath(part));
  if (os::RealFiles().MakeFolder(part) != os::FileOutcome::kOk)
    return Fail(Result::kNoDatabase, "cannot make " + Utf8(part), problem);
  result = BackUpFile(folder, InFolder(part, kDatabaseFile), goOn, problem);
  if (result == Result::kDone) result = CopyOtherFiles(folder, part, problem);
  if (result == Result::kDone && !WriteMarker(InFolder(part, kMarkerFile))) result = Result::kFull;
  if (result != Result::kDone) return result;
  std::filesystem::rename(os::ToFilesystemPath(part), os::ToFilesystemPath(to), error);
  return error ? Fail(Result::kFailed, "cannot name " + Utf8(to), problem) : Result::kDone;
}

Result RestoreSqlite(std::string_view backup, std::string_view folder, std::string& kept, std::string& problem) {
  os::Files& files = os::RealFiles();
  kept.clear();
  if (files.Kind(os::JoinPath(backup, kMarkerFile)) != os::PathKind::kFile)
    return Fail(Result::kNoDatabase, Utf8(backup) + " holds no whole backup", problem);
  if (files.MakeFolders(folder) != os::FileOutcome::kOk) return Fail(Result::kNoDatabase, "cannot make " + Utf8(folder), problem);
  // Nobody opens it while this lock is held.
  std::unique_ptr<os::FileLock> lock;
  if (files.Lock(os::JoinPath(folder, kLockFile), kWaitForSettingUp, lock) != os::FileOutcome::kOk) return Result::kBusy;
  const std::filesystem::path file = InFolder(folder, kDatabaseFile), staged = InFolder(folder, "kova.db.restored");
  const bool isThere = files.Kind(os::JoinPath(folder, kDatabaseFile)) == os::PathKind::kFile;
  if (isThere) {
    const Result closed = CloseForAll(folder);
    if (closed != Result::kDone && closed != Result::kDamaged)
      return closed == Result::kBusy ? Fail(closed, "a program has the database open", problem) : closed;
  }
  Result result = Stage(backup, folder, staged, problem);
  if (result == Result::kDone && isThere) result = KeepOld(folder, kept, problem);
  std::error_code error;
  if (result == Result::kDone) {
    // What a damaged database left beside it must not be taken for the new one's.
    for (const char* behind : {"-wal", "-journal", "-shm"})
      std::filesystem::remove(InFolder(folder, std::string(kDatabaseFile) + behind), error);
    std::filesystem::rename(staged, file, error);
    if (error) result = Fail(Result::kBusy, "a program has the database open", problem);
  }
  if (result != Result::kDone) {
    std::filesystem::remove(staged, error);
    return result;
  }
  result = CopyOtherFiles(backup, folder, problem);
  const std::filesystem::path marker = InFolder(folder, kMarkerFile);
  if (!std::filesystem::exists(marker, error) && !WriteMarker(marker)) result = Result::kFull;
  return result;
}

}  // namespace kova::store
