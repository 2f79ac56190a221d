#include "platform/recordstore/change_book.h"

#include <algorithm>
#include <utility>

namespace kova::store {

ChangeBook::ChangeBook()
    : writeCounts_(AllTables().size()), uncommitted_(AllTables().size()), takenBack_(AllTables().size()) {}

void ChangeBook::NoteWrite(const TableDef& table) {
  uncommitted_[At(table.id)].isNew = true;
  ++writeCounts_[At(table.id)];
}

void ChangeBook::NoteCommit() { std::fill(uncommitted_.begin(), uncommitted_.end(), Uncommitted()); }

void ChangeBook::NoteRollback() {
  for (std::size_t i = 0; i < uncommitted_.size(); ++i) {
    // To whoever was given one of these stamps, taking the changes back is one more change.
    const std::int64_t stamps = std::exchange(uncommitted_[i], Uncommitted()).stamps;
    takenBack_[i] += stamps > 0 ? stamps + 1 : 0;
  }
  for (std::uint64_t& count : writeCounts_) ++count;  // records read ahead may hold what was taken back
}

void ChangeBook::NoteUnitTakenBack() {
  for (std::uint64_t& count : writeCounts_) ++count;
  for (Uncommitted& each : uncommitted_) each.isNew = each.Count() > 0;
}

std::int64_t ChangeBook::Show(TableId table) {
  Uncommitted& own = uncommitted_[At(table)];
  own = {false, own.Count()};
  return own.stamps + takenBack_[At(table)];
}

}  // namespace kova::store
