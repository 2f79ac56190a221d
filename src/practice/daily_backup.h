#pragma once

// The backup that is made by itself, once a day, where the practice's settings name a folder for it.

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "platform/os/files.h"

namespace kova::practice {

/// How many daily backups are kept.
inline constexpr std::size_t kBackupsKept = 14;

/// What became of the last one: a line of the file "kova.backup" in the database folder.
struct BackupReport {
  std::string day;  // YYYYMMDD
  int minute = 0;   // of that day
  int result = 0;   // a number of result.h
};

/// Nothing when there is no report, or none that can be read.
std::optional<BackupReport> ReadBackupReport(os::Files& files, std::string_view databaseFolder);

/// True unless one was made on that day, or has been tried within the last hour.
bool IsBackupDue(os::Files& files, std::string_view databaseFolder, const std::tm& now);

/// Makes it where it is due, drops all but the last kBackupsKept backups of that folder, and reports. 0 for success, and
/// where another program is at it or it is not due; else a number of result.h and a line in `problem`, UTF-8.
int MakeDailyBackup(os::Files& files, std::string_view databaseFolder, std::string_view backupFolder, const std::tm& now,
                    std::string& problem);

/// What the user is told of a backup that failed; empty when the last one of that day did not.
std::string BackupComplaint(os::Files& files, std::string_view databaseFolder, std::string_view backupFolder,
                            const std::tm& now);
/// The same where the program that makes it cannot be started.
std::string NoBackupProgramText(std::string_view backupFolder);

}  // namespace kova::practice
