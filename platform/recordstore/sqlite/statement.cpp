#include "platform/recordstore/sqlite/statement.h"

namespace kova::store {

Result FromSqlite(int code) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_DONE:
    case SQLITE_ROW:
      return Result::Done;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Result::Busy;
    case SQLITE_CONSTRAINT:
      return Result::Duplicate;  // the only constraints are the keys
    case SQLITE_FULL:
      return Result::Full;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
      return Result::Damaged;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return Result::ReadOnly;
    case SQLITE_CANTOPEN:
      return Result::NoDatabase;
    default:
      return Result::Failed;
  }
}

Result Execute(sqlite3* connection, const char* sql) {
  return FromSqlite(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr));
}

}  // namespace kova::store
