#pragma once

// What a connection knows of its own writes, for its engine: whether records read ahead are still good, and by how
// much the tables' change stamps move. The same for every engine.

#include <cstdint>
#include <vector>

#include "platform/recordstore/schema.h"

namespace kova::store {

class ChangeBook {
 public:
  ChangeBook();

  /// A record was written in the transaction that is open.
  void NoteWrite(const TableDef& table);
  void NoteCommit();
  /// The transaction's writes were taken back, or may have been.
  void NoteRollback();
  /// The same of a unit within the transaction.
  void NoteUnitTakenBack();

  /// As Engine::WriteCount.
  std::uint64_t WriteCount(const TableDef& table) const { return writeCounts_[At(table.id)]; }
  /// How far the open transaction moves the table's stamp when it is kept.
  std::int64_t Changes(TableId table) const { return uncommitted_[At(table)].Count(); }
  /// What is added to the stored stamp for a caller who looks now: the changes of the open transaction, and those that a
  /// caller was shown and that were taken back.
  std::int64_t Show(TableId table);

 private:
  struct Uncommitted {
    bool isNew = false;       // changed since a stamp was last given
    std::int64_t stamps = 0;  // given so far
    std::int64_t Count() const { return stamps + (isNew ? 1 : 0); }
  };
  static std::size_t At(TableId table) { return static_cast<std::size_t>(table); }

  // by table
  std::vector<std::uint64_t> writeCounts_;
  std::vector<Uncommitted> uncommitted_;
  std::vector<std::int64_t> takenBack_;
};

}  // namespace kova::store
