#pragma once

// Copies of a practice that are taken while everybody works, put back, or saved out of a damaged file.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/result.h"

namespace kova::store {

/// A name that says when: `beginning`YYYYMMDD-hhmmss, local time.
std::string NameOfNow(const char* beginning);

/// Copies the database of `folder`, with the files beside it and its templates, into the new folder `to`, which can be opened
/// as a database folder itself. Others work on meanwhile. The copy is checked: whole, of the same number of records, as new
/// as the source. `to` is there only when all of that worked. Asks `goOn` now and then; kBusy when that says no, or when
/// a file that is shared over a network is written too often to be copied. `problem` gets a line where there is more to
/// say, UTF-8.
Result BackUpSqlite(std::string_view folder, bool overNetwork, std::string_view to, const std::function<bool()>& goOn,
                    std::string& problem);

/// Puts the records of a backup, which is checked before and stays as it is, into `folder`. kBusy while a program has
/// the database there open. What was there is kept in a folder beside it, whose name is in `kept`; at every moment the
/// folder has the old database or the new one. Settings files and templates are put back where they are missing.
Result RestoreSqlite(std::string_view backup, std::string_view folder, std::string& kept, std::string& problem);

/// What was saved of a table out of a damaged file.
struct SalvagedTable {
  std::string_view name;
  long long saved = 0;
  long long lost = 0;      ///< records that an index still names
  bool isWhole = true;     ///< false when there may be more that no index names
  std::vector<std::string> lostKeys;  ///< the primary keys of the first of them, UTF-8
};

/// Saves what can be read of the database of `damaged`, which is not written to, into the new folder `to`, with the files
/// beside it. kDamaged when nothing of it can be read.
Result SalvageSqlite(std::string_view damaged, std::string_view to, std::vector<SalvagedTable>& tables, std::string& problem);

/// Copies the files beside a folder's database and its templates into another folder: those that are not there yet.
Result CopyOtherFiles(std::string_view from, std::string_view to, std::string& problem);

}  // namespace kova::store
