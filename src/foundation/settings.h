#pragma once

#include <string>
#include <string_view>

#include "platform/os/profile_text.h"

namespace kova::foundation {

/// What one operation sees of the practice's settings: the settings file as it was when the operation opened
/// it. Many keys are read at the price of one file and one pass over it. Belongs to one thread at a time.
class SettingsSnapshot {
 public:
  /// From the bytes of a settings file; empty bytes for a file that is missing or not configured.
  explicit SettingsSnapshot(std::string content);
  /// Of a file that is there and cannot be read: answers with defaults, too.
  static SettingsSnapshot Unreadable();

  /// False when the answers are not what the practice set. Whatever books or prints money asks first and refuses.
  bool IsReadable() const { return isReadable_; }

  /// The value of `key` in `section` as GetPrivateProfileStringA answers with a buffer of 1,000 bytes: at
  /// most 999 bytes (a character at the limit may be cut in half). Without the key the default, cut likewise
  /// and without the spaces at its end, as the platform's function gives it.
  std::string GetString(std::string_view section, std::string_view key, std::string_view defaultValue) const;

  /// The value converted with atoi's rule; a present but empty or non-numeric value gives 0, not the default.
  int GetInt(std::string_view section, std::string_view key, int defaultValue) const;

 private:
  os::ProfileText text_;
  bool isReadable_ = true;
};

}  // namespace kova::foundation
