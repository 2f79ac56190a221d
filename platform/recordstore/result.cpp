#include "platform/recordstore/result.h"

namespace kova::store {

const char* Describe(Result result) {
  switch (result) {
    case Result::Done:
      return "done";
    case Result::NotFound:
      return "no record has that key";
    case Result::EndOfTable:
      return "no further record";
    case Result::Duplicate:
      return "a record with that primary key exists already";
    case Result::NotOpen:
      return "not bound to an open database";
    case Result::NoRecord:
      return "no current record";
    case Result::NoSuchKey:
      return "the table has no such key";
    case Result::Busy:
      return "another workstation held the database for too long";
    case Result::Changed:
      return "another workstation changed the record meanwhile";
    case Result::Full:
      return "the disk is full";
    case Result::Damaged:
      return "the database is damaged";
    case Result::ReadOnly:
      return "the database cannot be written";
    case Result::NoDatabase:
      return "the folder holds no database";
    case Result::WrongVersion:
      return "the database was made by a newer program";
    case Result::InTransaction:
      return "a transaction is open already";
    case Result::NoTransaction:
      return "no transaction is open, or it was lost to a failure";
    case Result::LocalOnly:
      return "a program on the machine that holds the folder has the database open in local mode; close it "
             "there once";
    case Result::Receipted:
      return "a receipt was given for the charge";
    case Result::BadArgument:
      return "an argument cannot be used";
    case Result::Failed:
      return "failed";
  }
  return "unknown result";
}

}  // namespace kova::store
