// Laying out and opening the database file in a database folder.

#include "platform/os/files.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/paths.h"
#include "platform/recordstore/sqlite/database_file.h"
#include "platform/recordstore/sqlite/sqlite_engine.h"
#include "platform/recordstore/sqlite/read_sql.h"

namespace kova::store {
namespace {

constexpr int kWaitForUpgrade = 1000;                   // for a program that may have it open all day

// Write-ahead logging shares memory between its users and so works on one machine only: over a network SQLite
// must not even read a file in that mode, but exclusively, when it uses no shared memory.
Result ReadExclusively(sqlite3* connection) { return Execute(connection, "PRAGMA locking_mode = EXCLUSIVE"); }

// A database that is once opened over the network leaves write-ahead mode and is marked, so that no program
// on its own machine takes it back there. Wants a connection that reads exclusively, and gives it back
// reading like any other.
Result MarkForNetwork(sqlite3* connection) {
  std::string sharing, mode;
  Result result = QueryText(connection, "SELECT value FROM store_info WHERE name = 'sharing'", sharing);
  if (result == Result::kDone && sharing == "local") {
    result = QueryText(connection, "PRAGMA journal_mode = DELETE", mode);
    if (result == Result::kDone && mode != "delete") result = Result::kLocalOnly;
    if (result == Result::kDone) {
      result = Execute(connection, "UPDATE store_info SET value = 'network' WHERE name = 'sharing'");
    }
  }
  if (result == Result::kDone) result = Execute(connection, "PRAGMA locking_mode = NORMAL");
  if (result == Result::kDone) result = QueryText(connection, "SELECT count(*) FROM store_info", mode);
  return result;
}

// In layout 1 SQLite chose the records' ids. From layout 2 on they come from a counter, which begins behind the largest.
std::string CountIdsSql() {
  std::string ids;
  for (const TableDef& table : AllTables())
    ids += (ids.empty() ? "SELECT MAX(id) AS id FROM " : " UNION ALL SELECT MAX(id) FROM ") + std::string(table.name);
  return "INSERT INTO counter SELECT '" + std::string(kIdCounter) + "', COALESCE(MAX(id), 0) FROM (" + ids + ");\n";
}

// From layout 3 on there are journals.
std::string JournalsSql() {
  std::string sql;
  for (const TableDef& table : AllTables()) sql += CreateTableSql(SqlForm(), JournalOf(table.id));
  return sql;
}

std::string UpgradeSql(int from) {
  return "BEGIN EXCLUSIVE;\n" + (from < 2 ? CountIdsSql() : std::string()) + JournalsSql() +
         "PRAGMA user_version = " + std::to_string(kSchemaVersion) + ";\nCOMMIT";
}

// Brings a file of an older program to this layout, in one transaction, while nobody else has it open: an older program
// would go on to choose ids. The file as it was stays beside it. kOldVersion while somebody has it open.
Result Upgrade(sqlite3* connection, const std::filesystem::path& file) {
  if (sqlite3_db_readonly(connection, "main") == 1) return Result::kOldVersion;
  std::string mode;
  sqlite3_busy_timeout(connection, kWaitForUpgrade);
  Result result = Execute(connection, "PRAGMA locking_mode = EXCLUSIVE");
  if (result == Result::kDone) result = QueryText(connection, "PRAGMA journal_mode = DELETE", mode);
  if (result == Result::kDone) result = Execute(connection, "BEGIN EXCLUSIVE; COMMIT");
  if (result == Result::kBusy || (result == Result::kDone && mode != "delete")) return Result::kOldVersion;
  // Another program may have been faster.
  int version = 0;
  if (result == Result::kDone) result = CheckVersion(connection, version);
  if (result == Result::kOldVersion) {
    std::filesystem::path copy = file;
    result = CopyDatabase(connection, copy += ".layout" + std::to_string(version));
    if (result == Result::kDone) result = Execute(connection, UpgradeSql(version).c_str());
    if (result != Result::kDone && sqlite3_get_autocommit(connection) == 0) (void)Execute(connection, "ROLLBACK");
  }
  if (result == Result::kDone) result = Execute(connection, "PRAGMA locking_mode = NORMAL");
  if (result == Result::kDone) result = QueryText(connection, "SELECT count(*) FROM store_info", mode);
  return result;
}

// How the file is shared decides its journal; in both a committed sale survives a power cut.
Result SetUpJournal(sqlite3* connection, bool overNetwork) {
  // EXTRA flushes the folder too when a rollback journal is removed; in write-ahead mode it means FULL.
  Result result = Execute(connection, "PRAGMA synchronous = EXTRA; PRAGMA cache_size = -8000");
  if (result != Result::kDone || overNetwork || sqlite3_db_readonly(connection, "main") == 1) return result;
  std::string sharing, mode;
  result = QueryText(connection, "SELECT value FROM store_info WHERE name = 'sharing'", sharing);
  if (result != Result::kDone || sharing != "local") return result;
  // A file that is busy just now stays in the mode that it has.
  (void)QueryText(connection, "PRAGMA journal_mode = WAL", mode);
  return Execute(connection, "PRAGMA journal_size_limit = 16777216");
}

std::string LayoutSql(bool overNetwork) {
  std::string sql = "PRAGMA application_id = " + std::to_string(kApplicationId) +
                    ";\nPRAGMA user_version = " + std::to_string(kSchemaVersion) +
                    ";\nBEGIN EXCLUSIVE;\n"
                    "CREATE TABLE store_info (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;\n"
                    "INSERT INTO store_info VALUES ('sharing', '";
  sql += overNetwork ? "network" : "local";
  sql +=
      "');\n"
      "CREATE TABLE counter (name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;\n"
      "INSERT INTO counter VALUES ('saleNumber', 0), ('" + std::string(kIdCounter) + "', 0);\n"
      "CREATE TABLE change_stamp (tableName TEXT PRIMARY KEY, stamp INTEGER NOT NULL) WITHOUT ROWID;\n";
  sql += JournalsSql();
  for (const TableDef& table : AllTables()) {
    sql +=
        CreateTableSql(SqlForm(), table) + "INSERT INTO change_stamp VALUES ('" + std::string(table.name) + "', 1);\n";
  }
  return sql + "COMMIT;\n";
}

}  // namespace

std::unique_ptr<Engine> OpenSqliteEngine(std::string_view folder, bool overNetwork, Result& result) {
  std::error_code error;
  const std::filesystem::path file = InFolder(folder, kDatabaseFile);
  result = Result::kNoDatabase;
  if (folder.empty() || !std::filesystem::exists(InFolder(folder, kMarkerFile), error) ||
      !std::filesystem::exists(file, error)) {
    return nullptr;
  }
  // One opens at a time, so that nobody turns to write-ahead mode while another prepares the file for the
  // network. A folder in which no lock can be made is one that nobody can prepare either.
  std::unique_ptr<os::FileLock> lock;
  const std::string lockFile = os::JoinPath(folder, kLockFile);
  if (os::RealFiles().Lock(lockFile, kWaitForSettingUp, lock) == os::FileOutcome::kBusy) {
    result = Result::kBusy;
    return nullptr;
  }
  const bool heldLocally = overNetwork && IsInWriteAheadMode(file);
  int code = SQLITE_OK, version = 0;
  Connection connection = Connect(file, SQLITE_OPEN_READWRITE, code);
  result = FromSqlite(code);
  if (result == Result::kDone && overNetwork) result = ReadExclusively(connection.get());
  if (result == Result::kDone) result = CheckVersion(connection.get(), version);
  if (result == Result::kOldVersion) result = Upgrade(connection.get(), file);
  if (result == Result::kDone && overNetwork) result = ReadExclusively(connection.get());
  if (result == Result::kDone && overNetwork) result = MarkForNetwork(connection.get());
  if (result == Result::kBusy && heldLocally) result = Result::kLocalOnly;
  if (result == Result::kDone) result = SetUpJournal(connection.get(), overNetwork);
  if (result != Result::kDone) return nullptr;
  const bool canWrite = sqlite3_db_readonly(connection.get(), "main") == 0;
  return std::make_unique<SqliteEngine>(std::move(connection), canWrite);
}

Result CreateSqliteDatabase(std::string_view folder, bool overNetwork) {
  std::error_code error;
  if (folder.empty()) return Result::kBadArgument;
  std::filesystem::create_directories(os::ToFilesystemPath(folder), error);
  const std::filesystem::path file = InFolder(folder, kDatabaseFile);
  const std::filesystem::path marker = InFolder(folder, kMarkerFile);
  if (!std::filesystem::is_directory(os::ToFilesystemPath(folder), error)) return Result::kNoDatabase;
  // Of two who make one at once the second finds the first one's, whole.
  std::unique_ptr<os::FileLock> lock;
  const std::string lockFile = os::JoinPath(folder, kLockFile);
  if (os::RealFiles().Lock(lockFile, kWaitForSettingUp, lock) == os::FileOutcome::kBusy) return Result::kBusy;
  if (std::filesystem::exists(marker, error) || std::filesystem::exists(file, error))
    return Result::kDuplicate;
  int code = SQLITE_OK;
  Connection connection = Connect(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, code);
  Result result = FromSqlite(code);
  if (result == Result::kDone) result = Execute(connection.get(), LayoutSql(overNetwork).c_str());
  connection.reset();
  if (result == Result::kDone && !WriteMarker(marker)) result = Result::kFull;
  if (result != Result::kDone) {
    std::filesystem::remove(marker, error);
    std::filesystem::remove(file, error);
  }
  return result;
}

}  // namespace kova::store
