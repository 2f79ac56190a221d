#pragma once

// Table objects for tests and benchmarks.

#include <type_traits>

#include "platform/recordstore/kovadbcall.h"

namespace kova::store::testing {

/// A table object of an open connection: `On<CSaleDB> sales(db);`. Of one that is not open, every call fails.
template <typename Table>
class On : public Table {
 public:
  explicit On(CKovaDBSys& db)
    requires std::is_default_constructible_v<Table>
  {
    (void)this->SetAssociatedDB(&db);
  }
  explicit On(CKovaDBSys& db)
    requires(!std::is_default_constructible_v<Table>)
      : Table(nullptr, 0) {
    (void)this->SetAssociatedDB(&db);
  }
};

}  // namespace kova::store::testing
