#include "platform/recordstore/sqlite/database_file.h"

#include <cstdlib>
#include <fstream>

#include "platform/os/filesystem_path.h"

namespace kova::store {
namespace {

std::string Utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace

std::filesystem::path InFolder(std::string_view folder, std::string_view file) {
  return os::ToFilesystemPath(folder) / std::string(file);
}

Connection Connect(const std::filesystem::path& file, int flags, int& code) {
  sqlite3* raw = nullptr;
  // A connection belongs to one thread; a mutex around every column read would cost a sixth of the reading.
  flags |= SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX;
  code = sqlite3_open_v2(Utf8Of(file).c_str(), &raw, flags, nullptr);
  Connection connection(raw);
  if (code == SQLITE_OK) sqlite3_busy_timeout(raw, kWaitForSettingUp);
  return connection;
}

Result QueryText(sqlite3* connection, const char* sql, std::string& value) {
  sqlite3_stmt* raw = nullptr;
  int code = sqlite3_prepare_v2(connection, sql, -1, &raw, nullptr);
  const Statement statement(raw);
  if (code == SQLITE_OK) code = sqlite3_step(raw);
  if (code != SQLITE_ROW) return code == SQLITE_DONE ? Result::kDamaged : FromSqlite(code);
  value = ColumnText(raw, 0);
  return Result::kDone;
}

bool IsInWriteAheadMode(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  char header[20] = {};
  return in.read(header, sizeof header) && header[18] == 2;
}

Result CheckVersion(sqlite3* connection, int& version) {
  std::string value;
  Result result = QueryText(connection, "PRAGMA application_id", value);
  if (result != Result::kDone) return result;
  if (value != std::to_string(kApplicationId)) return Result::kDamaged;
  result = QueryText(connection, "PRAGMA user_version", value);
  if (result != Result::kDone) return result;
  version = std::atoi(value.c_str());
  if (version < 1 || version > kSchemaVersion) return Result::kWrongVersion;
  return version == kSchemaVersion ? Result::kDone : Result::kOldVersion;
}

Result CopyDatabase(sqlite3* connection, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::remove(to, error);
  int code = SQLITE_OK;
  {
    const Connection copy = Connect(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, code);
    if (code == SQLITE_OK) {
      sqlite3_backup* const backup = sqlite3_backup_init(copy.get(), "main", connection, "main");
      if (backup != nullptr) (void)sqlite3_backup_step(backup, -1);
      code = backup != nullptr ? sqlite3_backup_finish(backup) : sqlite3_errcode(copy.get());
    }
  }
  const Result result = FromSqlite(code);
  if (result != Result::kDone) std::filesystem::remove(to, error);
  return result;
}

bool WriteMarker(const std::filesystem::path& file) {
  std::ofstream out(file, std::ios::binary);
  out << "This file marks a database folder. The records are in " << kDatabaseFile << ".\r\n";
  out.close();
  return out.good();
}

}  // namespace kova::store
