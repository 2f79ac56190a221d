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

Result Engine::ReadBeginnings(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
                              RecordBlock& block) {
  block.Reset(table.recordSize);
  const KeyDef& key = table.keys[keyIndex];
  RecordBlock found;
  for (const std::string& beginning : *from.beginnings) {
    if (block.Size() == limit) break;
    const std::string last = LastKeyOf(key, beginning);
    const bool isAhead = from.place == ReadFrom::Place::kFirst || from.key < beginning;
    if (!isAhead && from.key > last) continue;
    const ReadFrom part = isAhead ? ReadFrom{ReadFrom::Place::kAtLeast, beginning, 0, last}
                                  : ReadFrom{from.place, from.key, from.id, last};
    const Result result = Read(table, keyIndex, part, limit - block.Size(), found);
    if (result != Result::kDone) return result;
    while (found.Size() > 0 && MakeKey(key, found.Record(found.Size() - 1)) > last) found.DropLast();
    block.Append(found);
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
