#pragma once

#include <string>

#include "hosts/console/console.h"
#include "hosts/console/practice.h"

namespace kova::sample {

/// Throws when the record store did not do what it was asked to.
inline void Check(int result, const char* what) {
  if (result != 0)
    throw hosts::UsageError(std::string("cannot write ") + what + ": result " +
                            hosts::DescribeResult(result));
}

/// Many writes in transactions of some thousand: one flush to disk for each transaction. What was not
/// committed by Finish is rolled back.
class Batch {
 public:
  /// `table` is any table object bound to the connection.
  explicit Batch(CBaseDBCall& table) : table_(table) { Check(table_.BeginTran(), "a transaction"); }
  ~Batch() {
    if (open_) (void)table_.AbortTran();
  }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  /// Call after each record (or each group that belongs together).
  void Next() {
    if (++count_ % kWrites != 0) return;
    Finish();
    Check(table_.BeginTran(), "a transaction");
    open_ = true;
  }
  void Finish() {
    open_ = false;
    Check(table_.EndTran(), "a transaction");
  }

 private:
  static constexpr int kWrites = 5000;
  CBaseDBCall& table_;
  int count_ = 0;
  bool open_ = true;
};

/// A table object bound to the connection.
template <typename Table>
struct Bound {
  explicit Bound(CKovaDBSys& db) { Check(table.SetAssociatedDB(&db), "a table"); }
  Table* operator->() { return &table; }
  Table table{nullptr, 0};
};
template <>
inline Bound<CChargeDB>::Bound(CKovaDBSys& db) : table() {
  Check(table.SetAssociatedDB(&db), "a table");
}

}  // namespace kova::sample
