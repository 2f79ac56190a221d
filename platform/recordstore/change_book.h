#pragma once

// What a connection knows of its own writes, for its engine and its cursors: whether records read ahead are still good,
// which records were inserted and taken back, and by how much the tables' change stamps move. The same for every engine.

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "platform/recordstore/schema.h"

namespace kova::store {

class ChangeBook {
 public:
  ChangeBook();

  /// A transaction begins. With `hides` what was read before is older than what the transaction sees.
  void NoteBegin(bool hides);
  /// A unit within the transaction that is open.
  void NoteBeginUnit();
  /// A record was written in the transaction that is open.
  void NoteWrite(const TableDef& table);
  void NoteInsert(const TableDef& table, std::int64_t id);
  void NoteCommit();
  /// The transaction's writes were taken back, or may have been.
  void NoteRollback();
  /// The same of a unit within the transaction.
  void NoteUnitTakenBack();

  /// When a record came to be, for WasTakenBack; 0 for one that is not new in the transaction that is open.
  std::uint64_t BirthOf(const TableDef& table, std::int64_t id) const;
  /// Of a record that was inserted last.
  std::uint64_t LastBirth() const { return birth_; }
  /// True when a record of that birth was never kept.
  bool WasTakenBack(std::uint64_t birth) const;

  /// Changes whenever records of the table that were read ahead must not be used any more.
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
  void TakeBackFrom(std::uint64_t birth);

  struct Births {
    std::uint64_t first, last;
  };
  std::uint64_t birth_ = 0;        // of records that are inserted now; grows with every transaction and unit
  std::uint64_t transaction_ = 0;  // the first of the open transaction, and of its open unit
  std::uint64_t unit_ = 0;
  std::map<std::pair<TableId, std::int64_t>, std::uint64_t> inserted_;  // in the open transaction, by table and id
  std::vector<Births> takenBackBirths_;  // in their order, only of transactions that inserted something

  // by table
  std::vector<std::uint64_t> writeCounts_;
  std::vector<Uncommitted> uncommitted_;
  std::vector<std::int64_t> takenBack_;
};

}  // namespace kova::store
