#pragma once

#include "platform/recordstore/tables/all.h"

namespace kova::store {

#define KOVA_TABLE_ID(id, shortName, Tag, FIELDS, KEYS, meaning) id,
enum class TableId : int { KOVA_TABLES(KOVA_TABLE_ID) };
#undef KOVA_TABLE_ID

}  // namespace kova::store
