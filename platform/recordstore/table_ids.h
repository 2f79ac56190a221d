#pragma once

#include "platform/recordstore/tables/all.h"

namespace kova::store {

#define KOVA_TABLE_ID(id, shortName, Tag, FIELDS, KEYS, meaning) id,
enum class TableId : int { KOVA_TABLES(KOVA_TABLE_ID) };
#undef KOVA_TABLE_ID

/// The keys of a table by name; the values are the numbers that SetKey takes.
template <TableId kTable>
struct KeysOf;

#define KOVA_KEY_NAME(number, name, fieldNames) name = number,
#define KOVA_TABLE_KEYS(id, shortName, Tag, FIELDS, KEYS, meaning) \
  template <>                                                      \
  struct KeysOf<TableId::id> {                                     \
    enum class Key : int { KEYS(KOVA_KEY_NAME) };                  \
  };
KOVA_TABLES(KOVA_TABLE_KEYS)
#undef KOVA_TABLE_KEYS
#undef KOVA_KEY_NAME

}  // namespace kova::store
