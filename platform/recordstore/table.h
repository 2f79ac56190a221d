#pragma once

// Table objects that are bound when they are made: `On<CSaleDB> sales(db);`, and what their look-ups give.

#include <type_traits>

#include "platform/recordstore/kovadbcall.h"

namespace kova::store {

/// A table object bound to a connection. Where that is null or not open, every call fails with NotOpen, so a
/// caller checks the calls and not the binding.
template <typename Table>
class On : public Table {
 public:
  explicit On(CKovaDBSys* db)
    requires std::is_default_constructible_v<Table>
  {
    (void)this->SetAssociatedDB(db);
  }
  explicit On(CKovaDBSys* db)
    requires(!std::is_default_constructible_v<Table>)
      : Table(nullptr, 0) {
    (void)this->SetAssociatedDB(db);
  }
  explicit On(CKovaDBSys& db) : On(&db) {}
};

/// The result of a look-up whose record need not be there: 0 when there is none, too.
[[nodiscard]] inline int FoundOrNone(int result) {
  return result == static_cast<int>(Result::kNotFound) ? 0 : result;
}

}  // namespace kova::store
