#include "hosts/kovacall/backup_commands.h"

#include "hosts/console/console.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/recordstore/administration.h"
#include "platform/text932/cp932.h"
#include "practice/daily_backup.h"

namespace kova::hosts {
namespace {

using Arguments = std::vector<std::string>;

std::string Argument(const Arguments& arguments, std::size_t at, std::size_t count, const char* what) {
  if (arguments.size() != count || arguments[at].empty()) throw UsageError(std::string("takes ") + what);
  return TextArgument(arguments[at], what);
}

void PrintFolder(const char* name, const std::string& folder) {
  if (!folder.empty()) Print(std::string(name) + "=" + ShowControls(text932::ToUtf8(folder)) + "\n");
}

void Backup(const Arguments& arguments, Practice& practice) {
  const std::string backups = Argument(arguments, 0, 1, "the folder for backups");
  std::string made, problem;
  const std::string folder = practice.DatabaseFolder();
  if (folder.empty()) throw UsageError("needs --app FILE.ini, which names the database");
  PrintOutcome(KovaBackUp(folder.c_str(), backups.c_str(), {}, made, problem), problem);
  PrintFolder("backup", made);
}

void Restore(const Arguments& arguments, Practice&) {
  const char* const what = "the backup and the database folder to put it into";
  const std::string backup = Argument(arguments, 0, 2, what), folder = Argument(arguments, 1, 2, what);
  std::string kept, problem;
  PrintOutcome(KovaRestore(backup.c_str(), folder.c_str(), kept, problem), problem);
  PrintFolder("kept", kept);
}

void Salvage(const Arguments& arguments, Practice&) {
  const char* const what = "the damaged folder and the new one";
  const std::string damaged = Argument(arguments, 0, 2, what), to = Argument(arguments, 1, 2, what);
  std::string report, problem;
  PrintOutcome(KovaSalvage(damaged.c_str(), to.c_str(), report, problem), problem);
  Print(report);
}

void DailyBackup(const Arguments& arguments, Practice&) {
  const char* const what = "the database folder and the folder for backups";
  const std::string folder = Argument(arguments, 0, 2, what), backups = Argument(arguments, 1, 2, what);
  std::string problem;
  PrintOutcome(practice::MakeDailyBackup(os::RealFiles(), folder, backups, os::LocalTime(), problem), problem);
}

}  // namespace

const std::vector<TableCommand>& BackupCommands() {
  static const std::vector<TableCommand> commands = {
      {"backup", "FOLDER", "copies the database, while everybody works, into a new folder in FOLDER, and checks the copy", &Backup},
      {"restore", "BACKUP FOLDER", "puts a backup into a database folder; what was there is kept", &Restore},
      {"salvage", "DAMAGED NEW", "saves what can be read of a damaged database into a new folder, and lists what cannot", &Salvage},
      {"daily-backup", "DATABASE FOLDER", "makes the backup of the day unless that was done; keeps the last 14", &DailyBackup},
  };
  return commands;
}

}  // namespace kova::hosts
