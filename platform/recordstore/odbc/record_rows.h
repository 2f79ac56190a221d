#pragma once

// Records as they go through ODBC: rows of a result into record blocks, a record into a statement's parameters.

#include <memory>
#include <vector>

#include "platform/recordstore/engine.h"
#include "platform/recordstore/odbc/connection.h"
#include "platform/recordstore/record_text.h"

namespace kova::store::odbc {

/// Buffers for the rows of one fetch, columns as SelectSql names them. Bound to its statement for good.
class RecordRows {
 public:
  /// At most `rows` of them at a time.
  RecordRows(const TableDef& table, TextForm texts, std::size_t rows);
  RecordRows(const RecordRows&) = delete;
  RecordRows& operator=(const RecordRows&) = delete;

  [[nodiscard]] bool Bind(Statement& statement);
  /// Fetches all rows of the statement's result and adds them to the block.
  [[nodiscard]] bool FetchAll(Statement& statement, RecordBlock& block);

 private:
  struct Column {
    const FieldDef* field;  // null for the exact bytes
    std::size_t offset;     // of its length; its bytes follow
    std::size_t size;
  };
  void Decode(std::size_t row, RecordBlock& block) const;
  char* Row(std::size_t row) { return bytes_.data() + row * stride_; }
  const char* Row(std::size_t row) const { return bytes_.data() + row * stride_; }

  const TableDef& table_;
  TextForm texts_;
  std::size_t capacity_;
  std::size_t stride_ = 0;
  std::vector<Column> columns_;
  std::vector<char> bytes_;
  SQLULEN fetched_ = 0;
};

/// Buffers for a record's fields, keys and exact bytes, in that order.
class RecordParameters {
 public:
  RecordParameters(const TableDef& table, TextForm texts);
  RecordParameters(const RecordParameters&) = delete;
  RecordParameters& operator=(const RecordParameters&) = delete;

  /// Binds them from parameter `at` on, which becomes the next free one.
  [[nodiscard]] bool Bind(Statement& statement, int& at);
  /// The primary key once more.
  [[nodiscard]] bool BindPrimaryKey(Statement& statement, int at);
  void Set(const char* record);

 private:
  struct Place {
    std::vector<char> bytes;
    SQLLEN length = 0;
  };

  const TableDef& table_;
  TextForm texts_;
  std::vector<Place> fields_, keys_;
  Place exact_;
  RecordColumns columns_;
};

}  // namespace kova::store::odbc
