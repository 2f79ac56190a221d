#pragma once

// The database file in a folder: its name, connections to it, what it says of itself.

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/recordstore/sqlite/statement.h"

namespace kova::store {

inline constexpr int kSchemaVersion = 3;           // stored; a change needs a step in UpgradeSql
inline constexpr int kApplicationId = 0x4B4F5641;  // stored; do not change
inline constexpr std::string_view kDatabaseFile = "kova.db";
inline constexpr std::string_view kLockFile = "kova.db.lock";  // between programs; do not change
inline constexpr int kWaitForSettingUp = 5000;                 // ms

/// A file in a folder of code page 932.
std::filesystem::path InFolder(std::string_view folder, std::string_view file);

/// Opens a database file; SQLite's result in `code`. Waits kWaitForSettingUp for others' locks.
Connection Connect(const std::filesystem::path& file, int flags, int& code);

/// The first column of a statement's first row; kDamaged without a row.
Result QueryText(sqlite3* connection, const char* sql, std::string& value);

/// Bytes 18 and 19 of the file are 2 while it is in write-ahead mode.
bool IsInWriteAheadMode(const std::filesystem::path& file);

/// kDone for a database of this layout; kOldVersion, kWrongVersion or, for another one, kDamaged. `version` is that of the
/// file's layout where the result is kDone or kOldVersion.
Result CheckVersion(sqlite3* connection, int& version);

/// Copies the database, which nobody writes meanwhile, into a new file, flushed; an older file of that name is replaced.
Result CopyDatabase(sqlite3* connection, const std::filesystem::path& to);

/// Marks a folder as one that holds a database.
bool WriteMarker(const std::filesystem::path& file);

}  // namespace kova::store
