#include "platform/recordstore/sqlite/statement.h"

namespace kova::store {

Result FromSqlite(int code) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_DONE:
    case SQLITE_ROW:
      return Result::kDone;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Result::kBusy;
    case SQLITE_CONSTRAINT:
      return Result::kDuplicate;  // the only constraints are the keys
    case SQLITE_FULL:
      return Result::kFull;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
      return Result::kDamaged;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return Result::kReadOnly;
    case SQLITE_CANTOPEN:
      return Result::kNoDatabase;
    default:
      return Result::kFailed;
  }
}

Result Execute(sqlite3* connection, const char* sql) {
  return FromSqlite(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr));
}

}  // namespace kova::store
