#include "platform/recordstore/sqlite/table_sql.h"

namespace kova::store {
namespace {

std::string KeyColumn(const KeyDef& key) { return "key" + std::to_string(key.number); }

const char* ColumnType(FieldKind kind) { return kind == FieldKind::kText ? "TEXT" : "INTEGER"; }

std::string SelectSql(const TableDef& table) {
  std::string sql = "SELECT id, exact";
  for (const FieldDef& field : table.fields) sql += ", " + field.name;
  return sql + " FROM " + std::string(table.name);
}

}  // namespace

std::string CreateTableSql(const TableDef& table) {
  const std::string name(table.name);
  std::string sql = "CREATE TABLE " + name + " (id INTEGER PRIMARY KEY";
  for (const FieldDef& field : table.fields)
    sql += ", " + field.name + " " + ColumnType(field.kind) + " NOT NULL";
  for (const KeyDef& key : table.keys) sql += ", " + KeyColumn(key) + " BLOB NOT NULL";
  sql += ", exact BLOB);\n";
  for (const KeyDef& key : table.keys) {
    sql += std::string("CREATE ") + (key.number == 0 ? "UNIQUE " : "") + "INDEX " + name + "_" +
           KeyColumn(key) + " ON " + name + " (" + KeyColumn(key) + ");\n";
  }
  return sql;
}

std::string InsertSql(const TableDef& table) {
  std::string columns, places;
  for (const FieldDef& field : table.fields) columns += field.name + ", ";
  for (const KeyDef& key : table.keys) columns += KeyColumn(key) + ", ";
  for (std::size_t i = 0; i < table.fields.size() + table.keys.size(); ++i) places += "?, ";
  return "INSERT INTO " + std::string(table.name) + " (" + columns + "exact) VALUES (" + places + "?)";
}

std::string UpdateSql(const TableDef& table) {
  std::string sql = "UPDATE " + std::string(table.name) + " SET ";
  for (const FieldDef& field : table.fields) sql += field.name + " = ?, ";
  for (const KeyDef& key : table.keys) sql += KeyColumn(key) + " = ?, ";
  return sql + "exact = ? WHERE id = ?";
}

std::string DeleteSql(const TableDef& table) {
  return "DELETE FROM " + std::string(table.name) + " WHERE id = ?";
}

std::string SelectByIdSql(const TableDef& table) { return SelectSql(table) + " WHERE id = ?"; }

std::string ReadSql(const TableDef& table, const KeyDef& key, Range range) {
  const std::string column = KeyColumn(key);
  const std::string forward = " ORDER BY " + column + ", id LIMIT ?";
  const std::string backward = " ORDER BY " + column + " DESC, id DESC LIMIT ?";
  const std::string where = SelectSql(table) + " WHERE " + column;
  switch (range) {
    case Range::kFirst:
      return SelectSql(table) + forward;
    case Range::kLast:
      return SelectSql(table) + backward;
    case Range::kAtLeast:
      return where + " >= ?" + forward;
    case Range::kAbove:
      return where + " > ?" + forward;
    case Range::kAtMost:
      return where + " <= ?" + backward;
    case Range::kBelow:
      return where + " < ?" + backward;
    case Range::kSameAfter:
      return where + " = ? AND id > ? ORDER BY id LIMIT ?";
    case Range::kSameBefore:
      return where + " = ? AND id < ? ORDER BY id DESC LIMIT ?";
  }
  return {};
}

std::string ChangeStampsSql(std::size_t tables) {
  std::string sql = "SELECT 0";
  for (std::size_t i = 0; i < tables; ++i) sql += " + (SELECT stamp FROM change_stamp WHERE tableName = ?)";
  return sql;
}

}  // namespace kova::store
