#pragma once

#include "platform/recordstore/kovadbcall_export.h"

namespace kova::store {

// clang-format takes the attribute for a part of the name.
// clang-format off
/// What an operation of the record store gives; as int 0 for success. Hosts only tell 0 from the rest; the
/// numbers are for the support engineer and stay as they are.
enum class [[nodiscard]] Result : int {
  kDone = 0,
  kNotFound = 1,        ///< no record has that key
  kEndOfTable = 2,      ///< positioning ran off the first or last record
  kDuplicate = 3,       ///< a record with that primary key exists already
  kNotOpen = 4,         ///< the object is not bound to an open connection
  kNoRecord = 5,        ///< there is no current record to step from, update or delete
  kNoSuchKey = 6,       ///< the table has no key of that number
  kBusy = 7,            ///< another workstation held the store for longer than the waiting time
  kChanged = 8,         ///< another workstation changed or deleted the record since it was read
  kFull = 9,            ///< the disk is full
  kDamaged = 10,        ///< the database is damaged or no database
  kReadOnly = 11,       ///< the database cannot be written
  kNoDatabase = 12,     ///< the folder does not exist or holds no database
  kWrongVersion = 13,   ///< a newer program made the database, or its server is too old
  kInTransaction = 14,  ///< a transaction is open already
  kNoTransaction = 15,  ///< no transaction is open, or it was lost to a failure
  kLocalOnly = 16,      ///< on a network drive, while a program on its own machine holds it in local mode
  kReceipted = 17,      ///< a receipt was given for the charge; it stays
  kBadArgument = 18,    ///< a null pointer, or objects that do not belong together
  kUnreachable = 19,    ///< no database server answers, or the connection to it was lost
  kNoAccess = 20,       ///< the server refuses this account or its password, or none is stored here
  kNoDriver = 21,       ///< the server's ODBC driver is not installed on this workstation
  kConflict = 22,       ///< another workstation's transaction won; nothing of this one is written
  kOutcomeUnknown = 23,  ///< the connection was lost while writing, and no server says yet what became of it
  kOldVersion = 24,     ///< an older program made the database; it is to be upgraded first, while nobody has it open
  kNoSettings = 25,     ///< the practice's settings cannot be read, and money depends on them; nothing is written
  kFailed = 99,                 ///< anything else: no memory, an input or output error
};
// clang-format on

/// One line of English for the support engineer.
KOVADBCALL_API const char* Describe(Result result);

}  // namespace kova::store
