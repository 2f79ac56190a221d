#pragma once

// A store of which one table cannot be read: a failed read must not be taken for nothing there.

#include <memory>
#include <string>
#include <utility>

#include "platform/recordstore/testing/distant_engine.h"

namespace kova::store::testing {

class FailingReads : public DistantEngine {
 public:
  FailingReads(std::unique_ptr<Engine> store, std::string table)
      : DistantEngine(std::move(store)), table_(std::move(table)) {}
  bool IsDistant() const override { return false; }
  Result Read(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
              RecordBlock& block) override {
    return table.name == table_ ? Result::kBusy : DistantEngine::Read(table, keyIndex, from, limit, block);
  }

 private:
  std::string table_;
};

/// From now on reads of `table` (its short name) give Busy.
inline void FailReads(CKovaDBSys& db, const std::string& table) {
  EngineOf::Wrap(db, [&](std::unique_ptr<Engine> store) { return std::make_unique<FailingReads>(std::move(store), table); });
}

}  // namespace kova::store::testing
