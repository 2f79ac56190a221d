#pragma once

#include <string>
#include <string_view>

#include "platform/recordstore/kovadbcall.h"

namespace kova::printing {

/// Names behind codes, as printed documents show them. A code without a record, and one that cannot be read,
/// has the empty name; a retired record still has its own. Failure() tells the two apart.
class MasterNames {
 public:
  /// `db` may be null or closed: every name is empty then. It must outlive this object.
  explicit MasterNames(CKovaDBSys* db);

  std::string Category(std::string_view classCode, std::string_view code);
  std::string Doctor(std::string_view code);
  std::string Reason(std::string_view code);
  /// Of a free table: "00" to "09" the patients' extra items.
  std::string FreeEntry(std::string_view tableId, std::string_view code);

  /// The record store's result of the first name that could not be read; 0 when all were.
  [[nodiscard]] int Failure() const { return failure_; }

 private:
  template <typename Table>
  std::string NameIn(const Table& table, int result);

  CCategoryDB categories_{nullptr, 0};
  CDoctorDB doctors_{nullptr, 0};
  CResReasonDB reasons_{nullptr, 0};
  CCustomTblDB freeTables_{nullptr, 0};
  int failure_ = 0;
};

}  // namespace kova::printing
