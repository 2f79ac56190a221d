#pragma once

// Looking after a practice's database as a whole, by its folder: what setting up, support and `kovacall` need, and the
// applications that a reception works with do not.

#include <functional>
#include <string>

#include "platform/recordstore/kovadbcall_export.h"

/// Lays out an empty database in a folder, which is made when missing; a folder that holds one is left as it
/// is. For a folder whose records live on a server, the tables are laid out there. 0 for success, else a number of
/// result.h and, where there is more to say, a line of it in `problem` (UTF-8), which may be null.
KOVADBCALL_API int KovaCreateDatabase(const char* folder, std::string* problem = nullptr);

/// Prepares the database in a folder for use from other machines, before any of them opens it: it leaves the
/// mode that works on one machine only, for good. Result 16 while a program has it open in that mode. 0 for
/// success.
KOVADBCALL_API int KovaShareDatabase(const char* folder);

/// Where the records of a folder live, as "PostgreSQL desk1:5432, desk2:5432", in `text` (code page 932): 0 when that is on
/// a server, result NoDatabase when the folder says nothing of one, else the result for a file that cannot be used.
KOVADBCALL_API int KovaDescribeServer(const char* folder, std::string& text);

/// Keeps the password of the account that a folder's server is used with, for this user of this workstation, protected as
/// the system protects such data. 0 for success.
KOVADBCALL_API int KovaStoreServerPassword(const char* folder, const char* password);

/// Brings the tables of an older program to this program's layout; the records stay. On a server it wants the account that
/// laid them out (KOVA_DB_ACCOUNT and KOVA_DB_PASSWORD in the environment). A file is upgraded by the first program that
/// opens it, too; result OldVersion while another program has it open. 0 for success, also where there is nothing
/// to do; result WrongVersion for those of a newer program. `problem` as of KovaCreateDatabase.
KOVADBCALL_API int KovaUpgradeDatabase(const char* folder, std::string* problem = nullptr);

/// The statements that give a folder's account the rights that workstations need and no more, for the server's
/// administrator, UTF-8. 0 for success; result NoDatabase for a folder that says nothing of a server.
KOVADBCALL_API int KovaServerRights(const char* folder, std::string& sql);

/// Copies all records of one database folder into another, and compares them: see platform/recordstore/migration.h.
/// `progress` may be empty; it is told "copying" or "comparing", the table and its records so far, and gives false to stop.
/// 0 for success, else a number of result.h and a line in `problem`, UTF-8.
KOVADBCALL_API int KovaMigrate(const char* from, const char* to,
                               const std::function<bool(const char* what, const char* table, long long records)>& progress,
                               std::string& problem);

/// Copies the database of a folder while everybody works, checks the copy, and gives its folder in `made` (code page 932):
/// kova-YYYYMMDD-hhmmss in the folder `backups`, which exists. That folder holds the records, the files beside the
/// database and the mail templates, and can be opened as a database folder. Nothing of it is left when that fails. `goOn` may be
/// empty; it is asked now and then and gives false to stop. 0 for success, else a number of result.h and a line in `problem`
/// (UTF-8). A folder whose records live on a server gives result BadArgument: the server has its own way.
KOVADBCALL_API int KovaBackUp(const char* folder, const char* backups, const std::function<bool()>& goOn, std::string& made,
                              std::string& problem);

/// Puts a backup into a folder, which is made when missing. What was there is kept in a folder in it, `kept`; empty when
/// nothing was there. Result Busy, and nothing is done, while a program has that database open; on a network drive an idle program
/// cannot be seen, so close all of them. 0 for success.
KOVADBCALL_API int KovaRestore(const char* backup, const char* folder, std::string& kept, std::string& problem);

/// Saves what can be read of a damaged database, which is not written to, into a new folder. `report` gets a line a table,
/// UTF-8: how many records were saved and how many lost, with the keys of the lost ones. 0 for success, also when records are lost.
KOVADBCALL_API int KovaSalvage(const char* damaged, const char* to, std::string& report, std::string& problem);
