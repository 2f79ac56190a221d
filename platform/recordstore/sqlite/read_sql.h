#pragma once

#include "platform/recordstore/table_sql.h"

namespace kova::store {

/// The ranges that reads are made of. Stepping from a record goes through the rest of its equal keys by id
/// and then on to the next key: SQLite searches no index by (key, id) at once, and a run of equal keys can be
/// long.
enum class Range { kFirst, kLast, kAtLeast, kAbove, kAtMost, kBelow, kSameAfter, kSameBefore };
inline constexpr std::size_t kRanges = 8;

/// Columns as SelectSql's. Parameters: the key unless kFirst or kLast, the id for the last two, then the limit.
std::string ReadSql(const TableDef& table, const KeyDef& key, Range range);

/// The sum of that many tables' change stamps, their names as parameters; NULL when one has none.
std::string ChangeStampsSql(std::size_t tables);

}  // namespace kova::store
