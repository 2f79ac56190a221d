#pragma once

// A table of the practice's database read and written with prepared SQLite statements by hand: the baseline.
// It reads and writes the same columns as the record store; texts stay UTF-8.

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "bench/check.h"
#include "platform/recordstore/schema.h"

namespace kova::bench {

class RawDatabase {
 public:
  explicit RawDatabase(const std::string& file) {
    Check(sqlite3_open(file.c_str(), &connection_) == SQLITE_OK, "open");
    Run("PRAGMA synchronous = FULL");
    Run("PRAGMA cache_size = -8000");
  }
  ~RawDatabase() { sqlite3_close_v2(connection_); }
  void Run(const char* sql) {
    Check(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
  }
  sqlite3_stmt* Prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK, sql.c_str());
    return statement;
  }

 private:
  sqlite3* connection_ = nullptr;
};

/// "id, exact, every field".
inline std::string Columns(const store::TableDef& table) {
  std::string columns = "id, exact";
  for (const store::FieldDef& field : table.fields) columns += ", " + field.name;
  return columns;
}

/// Copies every column of a row into a record's fields.
inline void ReadRow(sqlite3_stmt* row, const store::TableDef& table, char* record) {
  int at = 2;
  for (const store::FieldDef& field : table.fields) {
    if (field.kind == store::FieldKind::kText) {
      const auto* text = sqlite3_column_text(row, at);
      const auto length = static_cast<std::size_t>(sqlite3_column_bytes(row, at));
      std::memset(record + field.offset, 0, field.width);
      std::memcpy(record + field.offset, text, std::min(length, field.width));
    } else {
      const int value = sqlite3_column_int(row, at);
      std::memcpy(record + field.offset, &value, field.width);
    }
    ++at;
  }
}

/// "INSERT INTO table (fields, keys) VALUES (...)".
inline std::string InsertSql(const store::TableDef& table) {
  std::string columns, places;
  for (const store::FieldDef& field : table.fields) columns += field.name + ", ", places += "?, ";
  for (const store::KeyDef& key : table.keys)
    columns += "key" + std::to_string(key.number) + ", ", places += "?, ";
  columns.resize(columns.size() - 2);
  places.resize(places.size() - 2);
  return "INSERT INTO " + std::string(table.name) + " (" + columns + ") VALUES (" + places + ")";
}

/// "UPDATE table SET fields, keys WHERE id = ?".
inline std::string UpdateSql(const store::TableDef& table) {
  std::string columns;
  for (const store::FieldDef& field : table.fields) columns += field.name + " = ?, ";
  for (const store::KeyDef& key : table.keys) columns += "key" + std::to_string(key.number) + " = ?, ";
  columns.resize(columns.size() - 2);
  return "UPDATE " + std::string(table.name) + " SET " + columns + " WHERE id = ?";
}

/// Binds the record's fields as they are (its texts are ASCII here) and its keys.
inline void BindRow(sqlite3_stmt* insert, const store::TableDef& table, const char* record) {
  int at = 1;
  for (const store::FieldDef& field : table.fields) {
    const char* bytes = record + field.offset;
    if (field.kind == store::FieldKind::kText) {
      const std::string_view text = store::GetText(bytes, field.width);
      sqlite3_bind_text(insert, at++, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    } else {
      int value = 0;
      std::memcpy(&value, bytes, field.width);
      sqlite3_bind_int(insert, at++, value);
    }
  }
  for (const store::KeyDef& key : table.keys) {
    const std::string bytes = store::MakeKey(key, record);
    sqlite3_bind_blob(insert, at++, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
  }
}

}  // namespace kova::bench
