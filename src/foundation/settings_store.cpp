#include "foundation/settings_store.h"

#include <utility>

#include "foundation/folders.h"
#include "foundation/number_text.h"
#include "platform/os/profile_file.h"

namespace kova::foundation {
namespace {

constexpr std::size_t kSwitchFileLimit = 4096;

std::string FileNameOfProfile(std::int32_t number) {
  return number == 0 ? "GLOBALSETTING.ini" : "GLOBALSETTING_" + std::to_string(number) + ".ini";
}

}  // namespace

SettingsStore::SettingsStore(const os::ApplicationProfile& profile, os::Files& files)
    : profile_(profile), files_(files) {}

std::string SettingsStore::FileName() const {
  const std::string folder = DatabaseFolder(profile_);
  return folder.empty() ? "" : folder + FileNameOfProfile(profile_.GetInt("GLOBAL", "PROFILE", 0));
}

bool SettingsStore::Exists() const {
  const std::string folder = DatabaseFolder(profile_);
  return !folder.empty() && files_.Kind(folder + FileNameOfProfile(0)) == os::PathKind::kFile;
}

SettingsSnapshot SettingsStore::Open() const {
  const std::string name = FileName();
  if (name.empty()) return SettingsSnapshot({});
  std::string content;
  const os::FileOutcome read = os::ReadProfileFile(files_, name, content);
  // A share that is gone has no file either; only a folder that is there is known to lack it.
  if (read == os::FileOutcome::kNotThere && files_.Kind(DatabaseFolder(profile_)) == os::PathKind::kFolder)
    return SettingsSnapshot({});
  // What a power cut leaves of a file that was being written.
  const bool isDamaged = !content.empty() && content.find_first_not_of('\0') == std::string::npos;
  if (read != os::FileOutcome::kOk || isDamaged) return SettingsSnapshot::Unreadable();
  return SettingsSnapshot(std::move(content));
}

os::FileOutcome SettingsStore::SetString(std::string_view section, std::optional<std::string_view> key,
                                         std::optional<std::string_view> value) {
  return os::UpdateProfileFile(files_, FileName(), section, key, value);
}

os::FileOutcome SettingsStore::SetInt(std::string_view section, std::string_view key, int value) {
  return SetString(section, key, std::to_string(value));
}

int SettingsStore::OptSys(std::string_view fileName) const {
  const std::string folder = DatabaseFolder(profile_);
  if (folder.empty()) return 0;
  std::string content;
  const os::FileOutcome read = files_.Read(folder + std::string(fileName), kSwitchFileLimit, content);
  if (read != os::FileOutcome::kOk && read != os::FileOutcome::kTooLarge) return 0;
  return ReadInteger(std::string_view(content).substr(0, content.find('\n')));
}

}  // namespace kova::foundation
