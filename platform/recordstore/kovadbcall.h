#pragma once

// The record-store library: open this header first. CKovaDBSys is the connection; the table classes are in
// table_classes.h, the records' fields in tables/, result numbers in result.h. table.h binds
// a table object when it is made, walk.h reads the records of a key, administration.h
// makes, upgrades and moves databases, journal.h tells what records were. The rest of the folder is private, but for schema.h
// (the tables as data), which tools may use.

#include "platform/recordstore/db_sys.h"
#include "platform/recordstore/result.h"
#include "platform/recordstore/schema.h"
#include "platform/recordstore/table_classes.h"
