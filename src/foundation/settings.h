#pragma once
// (contract fixed by the lead; filled by the settings work)
#include <string>
#include <string_view>

namespace kova::foundation {

/// What one operation sees of the practice's settings: the settings file as it was when the operation opened it.
class SettingsSnapshot {
 public:
  /// From the bytes of a settings file; empty bytes for a file that is missing or not configured.
  explicit SettingsSnapshot(std::string content);

  /// The value of `key` in `section` as GetPrivateProfileStringA answers with a buffer of 1,000 bytes.
  std::string GetString(std::string_view section, std::string_view key, std::string_view defaultValue) const;

  /// The value converted with atoi's rule; a present but empty or non-numeric value gives 0.
  int GetInt(std::string_view section, std::string_view key, int defaultValue) const;
};

}  // namespace kova::foundation
