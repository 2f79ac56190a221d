#include "platform/recordstore/table_sql.h"

namespace kova::store {
namespace {

std::string KeyName(const KeyDef& key) { return "key" + std::to_string(key.number); }

std::string JournalName(const SqlForm& form, const TableDef& table) { return form.Name(JournalOf(table.id).name); }

constexpr std::string_view kMonth = "2592000";  // seconds

}  // namespace

std::string KeyColumn(const SqlForm& form, const KeyDef& key) { return form.Name(KeyName(key)); }

std::string CreateTableSql(const SqlForm& form, const TableDef& table) {
  const std::string name = form.Name(table.name);
  std::string sql = "CREATE TABLE " + name + " (id " + form.IdType();
  for (const FieldDef& field : table.fields)
    sql += ", " + form.Name(field.name) + " " + form.FieldType(field) + " NOT NULL";
  for (const KeyDef& key : table.keys) sql += ", " + KeyColumn(form, key) + " " + form.KeyType(key) + " NOT NULL";
  sql += ", exact " + form.BytesType() + ")" + form.TableOptions() + ";\n";
  for (const KeyDef& key : table.keys) {
    const bool isPrimary = key.number == 0;
    sql += std::string("CREATE ") + (isPrimary ? "UNIQUE " : "") + "INDEX " +
           form.Name(std::string(table.name) + "_" + KeyName(key)) + " ON " + name + " (" + KeyColumn(form, key) +
           (isPrimary || form.IndexesHoldIds() ? ");\n" : ", id);\n");
  }
  return sql;
}

std::string InsertSql(const SqlForm& form, const TableDef& table) {
  std::string columns = "id, ", places = "?, ";
  for (const FieldDef& field : table.fields) columns += form.Name(field.name) + ", ";
  for (const KeyDef& key : table.keys) columns += KeyColumn(form, key) + ", ";
  for (std::size_t i = 0; i < table.fields.size() + table.keys.size(); ++i) places += "?, ";
  return "INSERT INTO " + form.Name(table.name) + " (" + columns + "exact) VALUES (" + places + "?)" +
         form.OrNothing();
}

std::string UpdateSql(const SqlForm& form, const TableDef& table) {
  std::string sql = "UPDATE " + form.Name(table.name) + " SET ";
  for (const FieldDef& field : table.fields) sql += form.Name(field.name) + " = ?, ";
  for (const KeyDef& key : table.keys) sql += KeyColumn(form, key) + " = ?, ";
  return sql + "exact = ? WHERE id = ?";
}

std::string DeleteSql(const SqlForm& form, const TableDef& table) {
  return "DELETE FROM " + form.Name(table.name) + " WHERE id = ?";
}

std::string SelectSql(const SqlForm& form, const TableDef& table) {
  std::string sql = "SELECT id, exact";
  for (const FieldDef& field : table.fields) sql += ", " + form.Name(field.name);
  return sql + " FROM " + form.Name(table.name);
}

std::string SelectByIdSql(const SqlForm& form, const TableDef& table) {
  return SelectSql(form, table) + " WHERE id = ?";
}

std::string SelectInOrderSql(const SqlForm& form, const TableDef& table) {
  return SelectSql(form, table) + " WHERE id > ? ORDER BY id LIMIT ?";
}

std::string JournalSql(const SqlForm& form, const TableDef& table, std::string_view id, std::string_view workstation,
                       std::string_view deed) {
  const std::string name = JournalName(form, table);
  std::string fields;
  for (const FieldDef& field : table.fields) fields += ", " + form.Name(field.name);
  std::string sql = "INSERT INTO " + name + " (id, " + form.Name("seconds") + ", " + form.Name("workstation") + ", " +
                    form.Name("deed") + ", exact" + fields + ") SELECT (SELECT COALESCE(MAX(id), 0) + 1 FROM " + name +
                    "), CAST(" + form.NowSql() + " AS " + form.TextType() + "), ";
  sql.append(workstation).append(", '").append(deed).append("', exact").append(fields).append(" FROM ");
  return sql.append(form.Name(table.name)).append(" WHERE id = ").append(id);
}

std::string ForgetOldSql(const SqlForm& form, const TableDef& table) {
  const std::string name = JournalName(form, table);
  return "DELETE FROM " + name + " WHERE id <= (SELECT second FROM (SELECT MIN(id) + 1 AS second FROM " + name +
         ") AS oldest) AND " + form.Name("seconds") + " < CAST(" + form.NowSql() + " - " + std::string(kMonth) + " AS " +
         form.TextType() + ")";
}

std::string ForgetLastSql(const SqlForm& form, const TableDef& table) {
  const std::string name = JournalName(form, table);
  return "DELETE FROM " + name + " WHERE id = (SELECT last FROM (SELECT MAX(id) AS last FROM " + name + ") AS newest)";
}

std::string OrderSql(const SqlForm& form, const KeyDef& key, bool forward) {
  const std::string column = KeyColumn(form, key);
  // Not every server sees that nothing is left to be sorted behind a unique key.
  if (key.number == 0) return " ORDER BY " + column + (forward ? "" : " DESC");
  return forward ? " ORDER BY " + column + ", id" : " ORDER BY " + column + " DESC, id DESC";
}

}  // namespace kova::store
