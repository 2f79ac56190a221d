#pragma once

#include <string_view>
#include <vector>

#include "platform/recordstore/kovadbcall.h"

namespace kova::records {

/// The sales of a day (YYYYMMDD) in order of their numbers. 0, also for none, else the record store's result; there
/// are none in `sales` then.
[[nodiscard]] int ReadSalesOfDay(CKovaDBSys* db, std::string_view date, std::vector<tagSALE>& sales);

}  // namespace kova::records
