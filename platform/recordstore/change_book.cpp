#include "platform/recordstore/change_book.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kova::store {

ChangeBook::ChangeBook()
    : writeCounts_(AllTables().size()), uncommitted_(AllTables().size()), takenBack_(AllTables().size()) {}

void ChangeBook::NoteBegin(bool hides) {
  transaction_ = ++birth_;
  if (!hides) return;
  for (std::uint64_t& count : writeCounts_) ++count;
}

void ChangeBook::NoteBeginUnit() { unit_ = ++birth_; }

void ChangeBook::NoteInsert(const TableDef& table, std::int64_t id) {
  inserted_.insert_or_assign({table.id, id}, birth_);
}

std::uint64_t ChangeBook::BirthOf(const TableDef& table, std::int64_t id) const {
  const auto found = inserted_.find({table.id, id});
  return found == inserted_.end() ? 0 : found->second;
}

bool ChangeBook::WasTakenBack(std::uint64_t birth) const {
  const auto after = std::upper_bound(takenBackBirths_.begin(), takenBackBirths_.end(), birth,
                                      [](std::uint64_t sought, const Births& each) { return sought < each.first; });
  return after != takenBackBirths_.begin() && birth <= std::prev(after)->last;
}

void ChangeBook::TakeBackFrom(std::uint64_t birth) {
  if (!inserted_.empty()) {
    while (!takenBackBirths_.empty() && takenBackBirths_.back().first >= birth) takenBackBirths_.pop_back();
    takenBackBirths_.push_back({birth, birth_});
  }
  ++birth_;
}

void ChangeBook::NoteWrite(const TableDef& table) {
  uncommitted_[At(table.id)].isNew = true;
  ++writeCounts_[At(table.id)];
}

void ChangeBook::NoteCommit() {
  inserted_.clear();
  std::fill(uncommitted_.begin(), uncommitted_.end(), Uncommitted());
}

void ChangeBook::NoteRollback() {
  TakeBackFrom(transaction_);
  inserted_.clear();
  for (std::size_t i = 0; i < uncommitted_.size(); ++i) {
    // To whoever was given one of these stamps, taking the changes back is one more change.
    const std::int64_t stamps = std::exchange(uncommitted_[i], Uncommitted()).stamps;
    takenBack_[i] += stamps > 0 ? stamps + 1 : 0;
  }
  for (std::uint64_t& count : writeCounts_) ++count;  // records read ahead may hold what was taken back
}

void ChangeBook::NoteUnitTakenBack() {
  TakeBackFrom(unit_);
  for (std::uint64_t& count : writeCounts_) ++count;
  for (Uncommitted& each : uncommitted_) each.isNew = each.Count() > 0;
}

std::int64_t ChangeBook::Show(TableId table) {
  Uncommitted& own = uncommitted_[At(table)];
  own = {false, own.Count()};
  return own.stamps + takenBack_[At(table)];
}

}  // namespace kova::store
