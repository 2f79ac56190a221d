#pragma once

// The SQL of a table, derived from its definition. A table is an id, a column a field, key0 .. keyN (the key
// bytes), and exact (the record's bytes or NULL), with one index a key. The statements are plain on purpose: every
// engine has the same, but for what SqlForm says. Parameters are "?".

#include <cstddef>
#include <string>

#include "platform/recordstore/engine.h"

namespace kova::store {

/// What differs from engine to engine; as it stands here for SQLite.
class SqlForm {
 public:
  SqlForm() = default;
  SqlForm(const SqlForm&) = delete;
  SqlForm& operator=(const SqlForm&) = delete;
  virtual ~SqlForm() = default;

  /// A table's or column's name as it stands in a statement.
  virtual std::string Name(std::string_view name) const { return std::string(name); }
  virtual std::string IdType() const { return "INTEGER PRIMARY KEY"; }
  virtual std::string FieldType(const FieldDef& field) const {
    return field.kind == FieldKind::kText ? "TEXT" : "INTEGER";
  }
  virtual std::string KeyType(const KeyDef&) const { return "BLOB"; }
  virtual std::string BytesType() const { return "BLOB"; }
  /// Behind the closing bracket of a table's columns.
  virtual std::string TableOptions() const { return {}; }
  /// True where every index holds the records' ids without being told.
  virtual bool IndexesHoldIds() const { return true; }
  virtual std::string TextType() const { return "TEXT"; }
  /// The database's clock, in seconds since 1970.
  virtual std::string NowSql() const { return "CAST(strftime('%s', 'now') AS INTEGER)"; }
  /// Behind an insertion, so that a primary key that exists already inserts nothing instead of failing.
  virtual std::string OrNothing() const { return {}; }
};

/// With its indexes; statements end in ";" and a line break.
std::string CreateTableSql(const SqlForm& form, const TableDef& table);
/// Parameters: the id, fields, keys, exact.
std::string InsertSql(const SqlForm& form, const TableDef& table);
/// Parameters: fields, keys, exact, the id.
std::string UpdateSql(const SqlForm& form, const TableDef& table);
std::string DeleteSql(const SqlForm& form, const TableDef& table);
/// Columns: id, exact, then the fields in order; up to the table's name.
std::string SelectSql(const SqlForm& form, const TableDef& table);
std::string SelectByIdSql(const SqlForm& form, const TableDef& table);
/// Parameters: the id that they are behind, the limit.
std::string SelectInOrderSql(const SqlForm& form, const TableDef& table);
/// Enters the record of `id` into its table's journal, as one that is overwritten ("u") or deleted ("d"): `id` and
/// `workstation` are expressions. Nothing is entered for a record that is not there.
std::string JournalSql(const SqlForm& form, const TableDef& table, std::string_view id, std::string_view workstation,
                       std::string_view deed);
/// Forgets the oldest one or two entries of a table's journal where they are older than a month: of a journal that this
/// follows each entry into, none is kept for long beyond that.
std::string ForgetOldSql(const SqlForm& form, const TableDef& table);
/// Takes the last entry back.
std::string ForgetLastSql(const SqlForm& form, const TableDef& table);
std::string KeyColumn(const SqlForm& form, const KeyDef& key);
/// The order of the key and its opposite; begins with a blank.
std::string OrderSql(const SqlForm& form, const KeyDef& key, bool forward);

}  // namespace kova::store
