#include "platform/recordstore/odbc/record_rows.h"

#include <algorithm>
#include <cstring>

namespace kova::store::odbc {
namespace {

std::size_t Aligned(std::size_t size) { return (size + 7) / 8 * 8; }

/// Bytes of a text of the field, a terminator included. No byte of code page 932 takes more than three in UTF-8.
std::size_t TextSize(const FieldDef& field, TextForm texts) {
  return texts == TextForm::kUtf16 ? (field.width + 1) * sizeof(char16_t) : field.width * 3 + 1;
}

SQLLEN LengthAt(const char* row, std::size_t offset) {
  SQLLEN length = 0;
  std::memcpy(&length, row + offset, sizeof length);
  return length;
}

}  // namespace

RecordRows::RecordRows(const TableDef& table, TextForm texts, std::size_t rows)
    : table_(table), texts_(texts), capacity_(rows) {
  stride_ = sizeof(std::int64_t);  // the id, which is never NULL
  const auto add = [&](const FieldDef* field, std::size_t size) {
    columns_.push_back({field, stride_, size});
    stride_ += sizeof(SQLLEN) + Aligned(size);
  };
  add(nullptr, table.exactSize);
  for (const FieldDef& field : table.fields)
    add(&field, field.kind == FieldKind::kText ? TextSize(field, texts_) : sizeof(std::int32_t));
  bytes_.resize(stride_ * capacity_);
}

bool RecordRows::Bind(Statement& statement) {
  bool worked = statement.SetAttribute(SQL_ATTR_ROW_BIND_TYPE, stride_) &&
                statement.SetAttribute(SQL_ATTR_ROW_ARRAY_SIZE, capacity_) &&
                statement.SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, &fetched_) &&
                statement.BindColumn(1, SQL_C_SBIGINT, Row(0), sizeof(std::int64_t), nullptr);
  int at = 2;
  for (const Column& column : columns_) {
    const bool isText = column.field != nullptr && column.field->kind == FieldKind::kText;
    const bool isBytes = column.field == nullptr || (isText && texts_ == TextForm::kUtf8Bytes);
    const int type = isBytes ? SQL_C_BINARY : isText ? SQL_C_WCHAR : SQL_C_SLONG;
    auto* length = reinterpret_cast<SQLLEN*>(Row(0) + column.offset);
    worked = worked && statement.BindColumn(at++, type, Row(0) + column.offset + sizeof(SQLLEN), column.size, length);
  }
  return worked;
}

bool RecordRows::FetchAll(Statement& statement, RecordBlock& block) {
  for (;;) {
    fetched_ = 0;
    bool has = false;
    if (!statement.Fetch(has)) return false;
    if (!has) return true;
    for (std::size_t row = 0; row < fetched_; ++row) Decode(row, block);
    if (fetched_ < capacity_) return true;
  }
}

void RecordRows::Decode(std::size_t at, RecordBlock& block) const {
  const char* row = Row(at);
  std::int64_t id = 0;
  std::memcpy(&id, row, sizeof id);
  char* record = block.Add(id);
  const Column& exact = columns_.front();
  const bool isExact = LengthAt(row, exact.offset) == static_cast<SQLLEN>(table_.exactSize);
  const char* exactRecord = isExact ? row + exact.offset + sizeof(SQLLEN) : nullptr;
  for (std::size_t i = 1; i < columns_.size(); ++i) {
    const Column& column = columns_[i];
    const FieldDef& field = *column.field;
    const SQLLEN length = LengthAt(row, column.offset);
    const char* bytes = row + column.offset + sizeof(SQLLEN);
    if (field.kind != FieldKind::kText) {
      std::int32_t value = 0;
      if (length != SQL_NULL_DATA) std::memcpy(&value, bytes, sizeof value);
      NumberFromColumn(value, field.kind, record + field.offset);
      continue;
    }
    // Most fields of most records are empty, as the block's place for a record begins.
    const bool hasExact = exactRecord != nullptr && field.offset < table_.exactSize;
    if (length <= 0 && !hasExact && length != SQL_NO_TOTAL) continue;
    const char* exactField = hasExact ? exactRecord + field.offset : nullptr;
    const std::size_t size = length == SQL_NO_TOTAL ? column.size : static_cast<std::size_t>(std::max<SQLLEN>(length, 0));
    if (texts_ == TextForm::kUtf8Bytes) {
      TextFromColumn(std::string_view(bytes, std::min(size, column.size)), exactField, record + field.offset,
                     field.width);
    } else {
      const std::size_t count = std::min(size / sizeof(char16_t), column.size / sizeof(char16_t) - 1);
      TextFromColumn(std::u16string_view(reinterpret_cast<const char16_t*>(bytes), count), exactField,
                     record + field.offset, field.width);
    }
  }
}

RecordParameters::RecordParameters(const TableDef& table, TextForm texts)
    : table_(table), texts_(texts), fields_(table.fields.size()), keys_(table.keys.size()) {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const FieldDef& field = table.fields[i];
    const bool isText = field.kind == FieldKind::kText;
    fields_[i].bytes.resize(isText ? TextSize(field, texts_) : sizeof(std::int32_t));
  }
  for (std::size_t i = 0; i < keys_.size(); ++i) keys_[i].bytes.resize(table.keys[i].width);
  exact_.bytes.resize(table.recordSize);
}

bool RecordParameters::Bind(Statement& statement, int& at) {
  bool worked = true;
  const auto bind = [&](Place& place, int type, int sqlType, std::size_t columnSize) {
    worked = worked && statement.BindParameter(at++, type, sqlType, columnSize, place.bytes.data(), place.bytes.size(),
                                               &place.length);
  };
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const FieldDef& field = table_.fields[i];
    if (field.kind == FieldKind::kText && texts_ == TextForm::kUtf8Bytes)
      bind(fields_[i], SQL_C_BINARY, SQL_VARBINARY, fields_[i].bytes.size());
    else if (field.kind == FieldKind::kText)
      bind(fields_[i], SQL_C_WCHAR, SQL_WVARCHAR, field.width);
    else
      bind(fields_[i], SQL_C_SLONG, SQL_INTEGER, 0);
  }
  for (std::size_t i = 0; i < keys_.size(); ++i) bind(keys_[i], SQL_C_BINARY, SQL_VARBINARY, table_.keys[i].width);
  bind(exact_, SQL_C_BINARY, SQL_LONGVARBINARY, table_.recordSize);
  return worked;
}

bool RecordParameters::BindPrimaryKey(Statement& statement, int at) {
  Place& key = keys_.front();
  return statement.BindParameter(at, SQL_C_BINARY, SQL_VARBINARY, table_.keys.front().width, key.bytes.data(),
                                 key.bytes.size(), &key.length);
}

void RecordParameters::Set(const char* record) {
  ToColumns(table_, record, columns_);
  std::size_t texts = 0;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const FieldDef& field = table_.fields[i];
    Place& place = fields_[i];
    if (field.kind == FieldKind::kText) {
      const std::string& utf8 = columns_.texts[texts++];
      if (texts_ == TextForm::kUtf8Bytes) {
        place.length = static_cast<SQLLEN>(utf8.size());
        std::memcpy(place.bytes.data(), utf8.data(), utf8.size());
        continue;
      }
      const std::u16string text = Utf16Of(utf8);
      place.length = static_cast<SQLLEN>(text.size() * sizeof(char16_t));
      std::memcpy(place.bytes.data(), text.data(), static_cast<std::size_t>(place.length));
    } else {
      const auto value = static_cast<std::int32_t>(NumberOfField(field.kind, record + field.offset));
      place.length = sizeof value;
      std::memcpy(place.bytes.data(), &value, sizeof value);
    }
  }
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    const std::string key = MakeKey(table_.keys[i], record);
    keys_[i].length = static_cast<SQLLEN>(key.size());
    std::memcpy(keys_[i].bytes.data(), key.data(), key.size());
  }
  exact_.length = columns_.exact ? SQL_NULL_DATA : static_cast<SQLLEN>(table_.recordSize);
  std::memcpy(exact_.bytes.data(), record, table_.recordSize);
}

}  // namespace kova::store::odbc
