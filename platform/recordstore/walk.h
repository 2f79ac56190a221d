#pragma once

// Walks over the records whose key begins with given values. The outcome cannot be dropped: a walk that failed
// half-way is no shorter list.

#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/recordstore/kovadbcall.h"

namespace kova::store {

/// The bytes that keys of `table` begin with whose first fields hold `values`; false when a value is longer than
/// its field, so that no record has it.
template <typename Table>
[[nodiscard]] bool MakeKeyBeginning(typename Table::Key key, std::initializer_list<std::string_view> values,
                                    std::string& beginning) {
  const TableDef& table = GetTable(Table::kTableId);
  const KeyDef& definition = table.keys[static_cast<std::size_t>(table.FindKey(static_cast<int>(key)))];
  beginning.clear();
  std::size_t at = 0;
  for (const std::string_view value : values) {
    const std::size_t width = definition.fields[at++]->width;
    if (value.size() > width) return false;
    beginning += value;
    beginning.resize(beginning.size() + width - value.size());
  }
  return true;
}

/// What a walk gives for the result of its last positioning: the end is where a walk that worked arrives.
[[nodiscard]] inline int WalkOutcome(int result) {
  const bool ended = result == static_cast<int>(Result::kEndOfTable) || result == static_cast<int>(Result::kNotFound);
  return ended ? 0 : result;
}

/// Calls `use(record)` with every record whose key begins with these bytes, in the order of the key, until it
/// returns false; it may also return nothing. 0 when the walk was not cut short by a failure, else a number of
/// result.h: what was seen before then is incomplete. A distant store is told where the walk ends.
template <typename Table, typename Use>
[[nodiscard]] int WalkBeginning(Table& table, typename Table::Key key, std::string_view beginning, Use use) {
  int result = table.SetKey(key);
  if (result != 0) return result;
  const auto length = static_cast<unsigned long>(beginning.size());
  table.SetKeyBuffer(beginning.data(), length);
  table.SetWalkEnd(beginning.data(), length);
  for (result = table.GetGREQ(); result == 0; result = table.GetNEXT()) {
    if constexpr (std::is_void_v<decltype(use(table.record))>) {
      use(table.record);
    } else if (!use(table.record)) {
      break;
    }
  }
  table.SetWalkEnd(nullptr, 0);
  return WalkOutcome(result);
}

/// The same for the records whose key's first fields hold `values`, as text; all records for none.
template <typename Table, typename Use>
[[nodiscard]] int Walk(Table& table, typename Table::Key key, std::initializer_list<std::string_view> values,
                       Use use) {
  std::string beginning;
  if (!MakeKeyBeginning<Table>(key, values, beginning)) return table.SetKey(key);
  return WalkBeginning(table, key, beginning, use);
}

/// The same from the last of them to the first.
template <typename Table, typename Use>
[[nodiscard]] int WalkBack(Table& table, typename Table::Key key, std::initializer_list<std::string_view> values,
                           Use use) {
  int result = table.SetKey(key);
  std::string beginning;
  if (result != 0 || !MakeKeyBeginning<Table>(key, values, beginning)) return result;
  const TableDef& definition = GetTable(Table::kTableId);
  const KeyDef& keyDef = definition.keys[static_cast<std::size_t>(definition.FindKey(static_cast<int>(key)))];
  table.SetKeyBuffer(beginning.data(), static_cast<unsigned long>(beginning.size()));
  const auto isOne = [&] {
    std::string found = MakeKey(keyDef, reinterpret_cast<const char*>(&table.record));
    found.resize(keyDef.width);
    return found.starts_with(beginning);
  };
  for (result = table.GetLEEQ(); result == 0 && isOne(); result = table.GetPREV()) {
    if constexpr (std::is_void_v<decltype(use(table.record))>) {
      use(table.record);
    } else if (!use(table.record)) {
      break;
    }
  }
  return WalkOutcome(result);
}

}  // namespace kova::store
