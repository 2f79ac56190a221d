#pragma once

// Copies a practice's records from one database folder to another, whatever engine each has.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/recordstore/result.h"

namespace kova::store {

struct MigrationStep {
  std::string_view what;  ///< "copying" or "comparing"
  std::string_view table;
  std::int64_t records;  ///< of this table so far
};

/// False stops; the same call later goes on from there.
using MigrationProgress = std::function<bool(const MigrationStep&)>;

/// Copies all records, in the order in which they were written, and the last numbers given, then compares every record byte
/// for byte. `from` is only read. `to` must be laid out and hold no records, or be what an earlier call for the same
/// `from` left unfinished; until the end a file in it, and a mark on its server, make OpenDB refuse it. kBusy when `progress` stopped it;
/// kDuplicate for a `to` with records; kChanged when somebody wrote to `from` meanwhile: do it again with an empty `to`. A
/// line in `problem` for every failure.
Result Migrate(std::string_view from, std::string_view to, const MigrationProgress& progress, std::string& problem);

}  // namespace kova::store
