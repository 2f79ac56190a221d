#pragma once

#include "platform/recordstore/kovadbcall_export.h"

namespace kova::store {

/// What an operation of the record store gives; as int 0 for success. Hosts only tell 0 from the rest; the
/// numbers are for the support engineer and stay as they are.
enum class [[nodiscard]] Result : int{
    Done = 0,
    NotFound = 1,        ///< no record has that key
    EndOfTable = 2,      ///< positioning ran off the first or last record
    Duplicate = 3,       ///< a record with that primary key exists already
    NotOpen = 4,         ///< the object is not bound to an open connection
    NoRecord = 5,        ///< there is no current record to step from, update or delete
    NoSuchKey = 6,       ///< the table has no key of that number
    Busy = 7,            ///< another workstation held the store for longer than the waiting time
    Changed = 8,         ///< another workstation changed or deleted the record since it was read
    Full = 9,            ///< the disk is full
    Damaged = 10,        ///< the database is damaged or no database
    ReadOnly = 11,       ///< the database cannot be written
    NoDatabase = 12,     ///< the folder does not exist or holds no database
    WrongVersion = 13,   ///< a newer program made the database
    InTransaction = 14,  ///< a transaction is open already
    NoTransaction = 15,  ///< no transaction is open, or it was lost to a failure
    LocalOnly = 16,      ///< on a network drive, while a program on its own machine holds it in local mode
    Receipted = 17,      ///< a receipt was given for the charge; it stays
    BadArgument = 18,   Failed = 99,
};

/// One line of English for the support engineer.
KOVADBCALL_API const char* Describe(Result result);

}  // namespace kova::store
