#pragma once

#include <sqlite3.h>

#include <memory>
#include <string_view>

#include "platform/recordstore/result.h"

namespace kova::store {

struct StatementCloser {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

struct ConnectionCloser {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, ConnectionCloser>;

/// Resets a statement that is kept, so that it holds no lock and no reference to bound bytes.
class StatementUse {
 public:
  explicit StatementUse(sqlite3_stmt* statement) : statement_(statement) {}
  ~StatementUse() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }
  StatementUse(const StatementUse&) = delete;
  StatementUse& operator=(const StatementUse&) = delete;

 private:
  sqlite3_stmt* statement_;
};

/// SQLite's result codes as ours: the one place where they are translated.
Result FromSqlite(int code);

/// Runs statements that give no rows.
Result Execute(sqlite3* connection, const char* sql);

/// Binds bytes that stay valid until the statement is reset.
inline void BindBytes(sqlite3_stmt* statement, int at, std::string_view bytes) {
  sqlite3_bind_blob(statement, at, bytes.empty() ? "" : bytes.data(), static_cast<int>(bytes.size()),
                    SQLITE_STATIC);
}
inline void BindText(sqlite3_stmt* statement, int at, std::string_view utf8) {
  sqlite3_bind_text(statement, at, utf8.empty() ? "" : utf8.data(), static_cast<int>(utf8.size()),
                    SQLITE_STATIC);
}
inline std::string_view ColumnBytes(sqlite3_stmt* statement, int at) {
  const void* bytes = sqlite3_column_blob(statement, at);
  if (bytes == nullptr) return {};
  return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(statement, at))};
}
inline std::string_view ColumnText(sqlite3_stmt* statement, int at) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, at));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, at))};
}

}  // namespace kova::store
