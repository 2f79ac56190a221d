#include "entry/daily_backup.h"

#include <mutex>

#include "entry/host_prompts.h"
#include "foundation/folders.h"
#include "platform/os/child_programs.h"
#include "platform/os/clock.h"
#include "platform/os/paths.h"
#include "platform/os/program.h"
#include "practice/daily_backup.h"

namespace kova::entry {
namespace {

constexpr std::int64_t kNotStartedAgainFor = 60 * 60 * 1000;  // ms

/// What this process did and said.
struct Minded {
  std::mutex mutex;
  std::int64_t startedAt = -kNotStartedAgainFor;
  int toldOn = -1;  // day of the year
};

Minded& OfThisProcess() {
  static Minded minded;
  return minded;
}

bool MayStart() {
  Minded& minded = OfThisProcess();
  const std::lock_guard guard(minded.mutex);
  const std::int64_t now = os::MonotonicMilliseconds();
  if (now - minded.startedAt < kNotStartedAgainFor) return false;
  minded.startedAt = now;
  return true;
}

bool MayTell(const std::tm& now) {
  Minded& minded = OfThisProcess();
  const std::lock_guard guard(minded.mutex);
  return std::exchange(minded.toldOn, now.tm_yday) != now.tm_yday;
}

}  // namespace

void MindDailyBackup(const Session& session) {
  const std::string backups = session.settings.Open().GetString("GLOBAL", "BackupFolder", "");
  const std::string folder = foundation::DatabaseFolder(session.profile);
  if (backups.empty() || folder.empty()) return;
  const std::tm now = os::LocalTime();
  std::string complaint = practice::BackupComplaint(session.files, folder, backups, now);
  if (practice::IsBackupDue(session.files, folder, now) && MayStart()) {
    const std::string arguments[] = {"daily-backup", folder, backups};
    if (!os::StartProgram(os::JoinPath(os::ProgramFolder(), "kovacall.exe"), arguments))
      complaint = practice::NoBackupProgramText(backups);
  }
  if (!complaint.empty() && MayTell(now)) HostPrompts().Inform(complaint);
}

}  // namespace kova::entry
