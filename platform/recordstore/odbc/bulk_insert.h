#pragma once

// Many records in few statements, for moving a practice. Where the server has arrays, a column's values go as one
// parameter: its parser then sees one short statement, whatever the number of records. Elsewhere the values are written out.

#include <memory>
#include <string>
#include <vector>

#include "platform/recordstore/odbc/dialect.h"
#include "platform/recordstore/record_text.h"

namespace kova::store::odbc {

class BulkInsert {
 public:
  BulkInsert(Connection& connection, const Dialect& dialect, const TableDef& table);

  /// Inserts the block's records from number `first` on, in their order, with the ids from `id` on. False leaves the
  /// reason in the connection.
  [[nodiscard]] bool Insert(RecordId id, const RecordBlock& block, std::size_t first);

 private:
  bool InsertArrays(RecordId id, const RecordBlock& block, std::size_t first);
  bool InsertRows(RecordId id, const RecordBlock& block, std::size_t first);
  std::size_t AppendToArrays(RecordId id, const char* record);

  Connection& connection_;
  const Dialect& dialect_;
  const TableDef& table_;
  const std::string arraysSql_;
  RecordColumns columns_;
  std::vector<std::string> arrays_;  // in the order of the columns
  std::unique_ptr<Statement> statement_;
};

}  // namespace kova::store::odbc
