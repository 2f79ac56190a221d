#include "platform/recordstore/engine.h"

#include <cstring>

namespace kova::store {

Result Engine::ReadMany(const TableDef& table, std::span<const std::string> primaryKeys, RecordBlock& block) {
  block.Reset(table.recordSize);
  RecordBlock found;
  for (const std::string& key : primaryKeys) {
    const Result result = Read(table, 0, {ReadFrom::Place::kAtLeast, key, 0, key}, 1, found);
    if (result != Result::kDone) return result;
    if (found.Size() == 0 || MakeKey(table.keys.front(), found.Record(0)) != key) continue;
    std::memcpy(block.Add(found.Id(0)), found.Record(0), table.recordSize);
  }
  return Result::kDone;
}

Result Engine::InsertMany(const TableDef& table, const RecordBlock& block, std::size_t first) {
  for (std::size_t i = first; i < block.Size(); ++i) {
    RecordId id = 0;
    const Result result = Insert(table, block.Record(i), id);
    if (result != Result::kDone) return result;
  }
  return Result::kDone;
}

}  // namespace kova::store
