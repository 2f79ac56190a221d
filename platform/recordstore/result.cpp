#include "platform/recordstore/result.h"

namespace kova::store {

const char* Describe(Result result) {
  switch (result) {
    case Result::kDone:
      return "done";
    case Result::kNotFound:
      return "no record has that key";
    case Result::kEndOfTable:
      return "no further record";
    case Result::kDuplicate:
      return "a record with that primary key exists already";
    case Result::kNotOpen:
      return "not bound to an open database";
    case Result::kNoRecord:
      return "no current record";
    case Result::kNoSuchKey:
      return "the table has no such key";
    case Result::kBusy:
      return "another workstation held the database for too long";
    case Result::kChanged:
      return "another workstation changed the record meanwhile";
    case Result::kFull:
      return "the disk is full";
    case Result::kDamaged:
      return "the database is damaged";
    case Result::kReadOnly:
      return "the database cannot be written";
    case Result::kNoDatabase:
      return "the folder holds no database";
    case Result::kWrongVersion:
      return "the database was made by a newer program, or its server is too old";
    case Result::kInTransaction:
      return "a transaction is open already";
    case Result::kNoTransaction:
      return "no transaction is open, or it was lost to a failure";
    case Result::kLocalOnly:
      return "a program on the machine that holds the folder has the database open in local mode; close it "
             "there once";
    case Result::kReceipted:
      return "a receipt was given for the charge";
    case Result::kBadArgument:
      return "an argument cannot be used";
    case Result::kUnreachable:
      return "no database server answers";
    case Result::kNoAccess:
      return "the database server refuses the account or its password";
    case Result::kNoDriver:
      return "the database server's ODBC driver is not installed";
    case Result::kConflict:
      return "another workstation changed the same at the same time";
    case Result::kOutcomeUnknown:
      return "the connection was lost while writing; whether it was written is not known yet";
    case Result::kOldVersion:
      return "the database was made by an older program and is to be upgraded first";
    case Result::kNoSettings:
      return "the practice's settings cannot be read";
    case Result::kFailed:
      return "failed";
  }
  return "unknown result";
}

}  // namespace kova::store
