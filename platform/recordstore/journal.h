#pragma once

// What the records of the last month were: every overwriting and deletion enters the record as it was into its table's
// journal, in the same transaction, whatever the engine. Shown by `kovacall history`, brought back by `kovacall bring-back`.

#include <string>
#include <vector>

#include "platform/recordstore/db_sys.h"
#include "platform/recordstore/schema.h"

namespace kova::store {

struct JournalEntry {
  long long number = 0;     ///< of the entry, in its table; later ones are greater
  long long time = 0;       ///< seconds since 1970, by the database's clock
  std::string workstation;  ///< its name, code page 932
  bool isDeleted = false;   ///< else overwritten
  std::vector<char> record; ///< as it was
};

/// The entries of one primary key, the oldest first. `record` holds the key's fields. 0 for success; none is no failure.
KOVADBCALL_API int ReadHistory(CKovaDBSys& db, TableId table, const char* record, std::vector<JournalEntry>& history);

/// Makes the record again what it was at an entry, in one transaction, which enters what it overwrites. 0 for success;
/// result NotFound for a number that the journal does not hold, Duplicate when another record has the primary key since.
KOVADBCALL_API int BringBack(CKovaDBSys& db, TableId table, long long entry);

/// This workstation as the journals name it: UTF-8, as much of its name as they hold.
std::string JournalledWorkstation();

}  // namespace kova::store
