#pragma once

// The SQL of a table, derived from its definition. A table is
//   id INTEGER PRIMARY KEY, a column a field, key0 .. keyN (the key bytes, BLOB), exact (BLOB or NULL)
// with one index a key. The statements are plain on purpose: another engine uses the same shapes.

#include <cstddef>
#include <string>

#include "platform/recordstore/engine.h"

namespace kova::store {

std::string CreateTableSql(const TableDef& table);
std::string InsertSql(const TableDef& table);
/// Parameters as InsertSql's, then the id.
std::string UpdateSql(const TableDef& table);
std::string DeleteSql(const TableDef& table);
/// Columns: id, exact, then the fields in order.
std::string SelectByIdSql(const TableDef& table);

/// The ranges that reads are made of. Stepping from a record goes through the rest of its equal keys by id
/// and then on to the next key: SQLite searches no index by (key, id) at once, and a run of equal keys can be
/// long.
enum class Range { kFirst, kLast, kAtLeast, kAbove, kAtMost, kBelow, kSameAfter, kSameBefore };
inline constexpr std::size_t kRanges = 8;

/// The same columns. Parameters: the key unless kFirst or kLast, the id for the last two, then the limit.
std::string ReadSql(const TableDef& table, const KeyDef& key, Range range);

/// The sum of that many tables' change stamps, their names as parameters; NULL when one has none.
std::string ChangeStampsSql(std::size_t tables);

}  // namespace kova::store
