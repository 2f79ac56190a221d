#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/settings.h"
#include "platform/os/application_profile.h"
#include "platform/os/files.h"

namespace kova::foundation {

/// The practice-wide settings: an ini file in the shared database folder that the application profile names.
/// Nothing is remembered between calls, so every operation sees what other workstations changed.
class SettingsStore {
 public:
  /// Both must outlive this object.
  SettingsStore(const os::ApplicationProfile& profile, os::Files& files);

  /// Full name of the settings file of the profile's number ("GLOBAL"/"PROFILE"), which need not exist; empty
  /// when no database folder is configured.
  std::string FileName() const;

  /// Whether the settings file of profile number 0 exists, whatever the profile's own number is: deliberate.
  bool Exists() const;

  /// The settings as they are now, from one opening of the file: empty ones when no database folder is configured or the
  /// folder has no such file, unreadable ones when folder or file cannot be read, or the file holds nothing but NULs.
  SettingsSnapshot Open() const;

  /// Stores a value; without a value removes the key, without a key the section. See UpdateProfileFile for
  /// what is promised beside other writers. kNotThere when no database folder is configured or it is gone.
  [[nodiscard]] os::FileOutcome SetString(std::string_view section, std::optional<std::string_view> key,
                                          std::optional<std::string_view> value);
  [[nodiscard]] os::FileOutcome SetInt(std::string_view section, std::string_view key, int value);

  /// The number on the first line of the switch file `fileName` in the database folder (atoi's rule); 0 when
  /// there is no such file, no first line or no database folder.
  int OptSys(std::string_view fileName) const;

 private:
  const os::ApplicationProfile& profile_;
  os::Files& files_;
};

}  // namespace kova::foundation
