#pragma once

#include "platform/os/retry.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::records {

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

/// Retries `work` (os::RetryWhile) while another workstation's transaction won over its own. Returns the
/// record store's result, which `work` gives. `work` makes its own Transaction and reads everything anew
/// within it: the record store does not retry inside a transaction, so this is the only loop.
template <typename Work>
int WhileInConflict(Work work) {
  return os::RetryWhile(work,
                        [](int result) { return result == static_cast<int>(store::Result::kConflict); });
}

}  // namespace kova::records
