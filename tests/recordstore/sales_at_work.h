#pragma once

// Sales as a desk makes them, for tests of a store that may be lost meanwhile.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/os/clock.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"

namespace kova::testing {

using store::On;

inline constexpr int Code(store::Result result) { return static_cast<int>(result); }

/// The result of an operation, which must come within the time that a desk is kept waiting.
template <typename Operation>
int Timed(Operation operation, std::int64_t* longest = nullptr) {
  const std::int64_t begun = os::MonotonicMilliseconds();
  const int result = operation();
  const std::int64_t taken = os::MonotonicMilliseconds() - begun;
  EXPECT_LT(taken, 10000);
  if (longest != nullptr) *longest = std::max(*longest, taken);
  return result;
}

inline int MakeSale(CKovaDBSys& db, CString& number) {
  On<CSaleDB> sales(db);
  On<CSaleItemDB> items(db);
  store::PutText(sales.record.patientCode, "1");
  tagSALEITEM item{};
  return sales.InsertAdjustFee(number, &item, &items);
}
inline int MakeSale(CKovaDBSys& db) {
  CString number;
  return MakeSale(db, number);
}

/// The numbers of all sales, in order.
inline std::vector<std::string> SaleNumbers(CKovaDBSys& db) {
  On<CSaleDB> sales(db);
  std::vector<std::string> numbers;
  for (int r = sales.GetFIRST(); r == 0; r = sales.GetNEXT()) numbers.emplace_back(store::GetText(sales.record.saleNumber));
  return numbers;
}

}  // namespace kova::testing
