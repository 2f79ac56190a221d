#pragma once

// Table objects that are bound when they are made: `On<CSaleDB> sales(db);`.

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

}  // namespace kova::store
