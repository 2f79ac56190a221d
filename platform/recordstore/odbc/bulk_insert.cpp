#include "platform/recordstore/odbc/bulk_insert.h"

#include <charconv>

namespace kova::store::odbc {
namespace {

constexpr std::size_t kLongestStatement = 512 * 1024;  // bytes; servers take 16 MB by default

void AppendNumber(std::int64_t number, std::string& text) {
  char digits[24];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

/// Backslashes stand for themselves in our sessions.
void AppendLiteral(std::string_view utf8, std::string& sql) {
  sql += '\'';
  for (const char c : utf8) sql.append(c == '\'' ? 2 : 1, c);
  sql += '\'';
}

void AppendElement(std::string_view utf8, std::string& array) {
  array += '"';
  for (const char c : utf8) {
    if (c == '"' || c == '\\') array += '\\';
    array += c;
  }
  array += '"';
}

void AppendBytesElement(std::string_view bytes, std::string& array) {
  array += "\"\\\\x";
  AppendHex(bytes, array);
  array += '"';
}

}  // namespace

BulkInsert::BulkInsert(Connection& connection, const Dialect& dialect, const TableDef& table)
    : connection_(connection), dialect_(dialect), table_(table), arraysSql_(dialect.InsertArraysSql(table)) {}

bool BulkInsert::Insert(RecordId id, const RecordBlock& block, std::size_t first) {
  return arraysSql_.empty() ? InsertRows(id, block, first) : InsertArrays(id, block, first);
}

// Bytes that were added.
std::size_t BulkInsert::AppendToArrays(RecordId id, const char* record) {
  std::size_t added = 0, text = 0;
  auto array = arrays_.begin();
  const auto append = [&](const auto& add) {
    const std::size_t before = array->size();
    add(*array);
    *array += ',';
    added += array->size() - before;
    ++array;
  };
  ToColumns(table_, record, columns_);
  append([&](std::string& ids) { AppendNumber(id, ids); });
  for (const FieldDef& field : table_.fields) {
    append([&](std::string& values) {
      if (field.kind == FieldKind::kText)
        AppendElement(columns_.texts[text++], values);
      else
        AppendNumber(NumberOfField(field.kind, record + field.offset), values);
    });
  }
  for (const KeyDef& key : table_.keys) append([&](std::string& keys) { AppendBytesElement(MakeKey(key, record), keys); });
  append([&](std::string& exact) {
    if (columns_.exact)
      exact += "NULL";
    else
      AppendBytesElement({record, table_.recordSize}, exact);
  });
  return added;
}

bool BulkInsert::InsertArrays(RecordId id, const RecordBlock& block, std::size_t first) {
  if (statement_ == nullptr) {
    auto statement = std::make_unique<Statement>(connection_);
    if (!statement->Prepare(arraysSql_)) return false;
    statement_ = std::move(statement);
    arrays_.resize(table_.fields.size() + table_.keys.size() + 2);
  }
  std::vector<SQLLEN> lengths(arrays_.size());
  while (first < block.Size()) {
    for (std::string& array : arrays_) array = "{";
    for (std::size_t size = 0; first < block.Size() && size < kLongestStatement; ++first)
      size += AppendToArrays(id++, block.Record(first));
    for (std::size_t i = 0; i < arrays_.size(); ++i) {
      std::string& array = arrays_[i];
      array.back() = '}';
      lengths[i] = static_cast<SQLLEN>(array.size());
      if (!statement_->BindParameter(static_cast<int>(i) + 1, SQL_C_BINARY, SQL_LONGVARBINARY, array.size(), array.data(),
                                     array.size(), &lengths[i]))
        return false;
    }
    if (!statement_->Execute()) return false;
    statement_->CloseResult();
  }
  return true;
}

bool BulkInsert::InsertRows(RecordId id, const RecordBlock& block, std::size_t first) {
  const std::string insert = InsertSql(dialect_, table_);
  const std::string beginning = insert.substr(0, insert.find("VALUES") + 7);
  while (first < block.Size()) {
    std::string sql = beginning;
    for (; first < block.Size() && sql.size() < kLongestStatement; ++first) {
      const char* record = block.Record(first);
      ToColumns(table_, record, columns_);
      sql += '(';
      AppendNumber(id++, sql);
      std::size_t text = 0;
      for (const FieldDef& field : table_.fields) {
        sql += ',';
        if (field.kind == FieldKind::kText)
          AppendLiteral(columns_.texts[text++], sql);
        else
          AppendNumber(NumberOfField(field.kind, record + field.offset), sql);
      }
      for (const KeyDef& key : table_.keys) sql.append(",").append(dialect_.Bytes(MakeKey(key, record)));
      sql.append(",").append(columns_.exact ? "NULL" : dialect_.Bytes({record, table_.recordSize})).append("),");
    }
    sql.pop_back();
    Rows none;
    if (!Statement(connection_).Run(sql, none)) return false;
  }
  return true;
}

}  // namespace kova::store::odbc
