#pragma once

// How the practice sends its mail: settings section "EMail". The passwords are kept as they were entered, in
// plain text: the mail programs read them so.

#include <string>

#include "foundation/settings_store.h"

namespace kova::mail {

struct MailSettings {
  std::string server;  // host, or host:port
  std::string address;
  std::string sender;
  std::string userId;
  std::string password;
  int connection = 0;  // 0: a line that is always there, else a dial-up connection
  std::string connectionName;
  int authenticates = 0;  // other than 0: with the two below
  std::string authenticationUserId;
  std::string authenticationPassword;

  bool operator==(const MailSettings&) const = default;
};

/// The longest text that can be entered, in characters: the settings hold 999 bytes of one.
inline constexpr int kLongestMailSetting = 490;

MailSettings ReadMailSettings(const foundation::SettingsSnapshot& settings);

/// Stores all of them. The first failure ends it; what was stored by then stays.
[[nodiscard]] os::FileOutcome WriteMailSettings(foundation::SettingsStore& store,
                                                const MailSettings& settings);

}  // namespace kova::mail
