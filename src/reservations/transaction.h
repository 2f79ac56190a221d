#pragma once

#include "platform/os/clock.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::reservations {

/// A transaction of the table's connection that is taken back unless it was ended, also when memory runs out
/// in between.
class Transaction {
 public:
  /// The table must be bound and outlive this object.
  explicit Transaction(CBaseDBCall& table) : table_(table), begun_(table.BeginTran()) {}
  ~Transaction() {
    if (begun_ == 0 && !ended_) (void)table_.AbortTran();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// What beginning gave: the record store's result.
  int Begun() const { return begun_; }

  /// Keeps what was written; the failure, and nothing is kept, where that does not work.
  [[nodiscard]] int End() {
    ended_ = true;
    return table_.EndTran();
  }

 private:
  CBaseDBCall& table_;
  int begun_;
  bool ended_ = false;
};

/// Does `work` again, a few times, while another workstation's transaction won over its own; it gives the record store's
/// result, and whatever it reads and writes is read and written anew.
template <typename Work>
int WhileInConflict(Work work) {
  constexpr int kAttempts = 5;
  int result = work();
  for (int attempt = 1; attempt < kAttempts && result == static_cast<int>(store::Result::kConflict); ++attempt) {
    os::SleepMilliseconds(10 << attempt);
    result = work();
  }
  return result;
}

}  // namespace kova::reservations
