#include "mail/mail_settings.h"

#include <string_view>

#include "mail/template_roles.h"

namespace kova::mail {
namespace {

struct Key {
  std::string_view name;
  std::string MailSettings::*text = nullptr;
  int MailSettings::*number = nullptr;
};

// Stored in the practices' settings files and read by the mail programs; do not change. "Stmp" is spelled so
// deliberately.
constexpr Key kKeys[] = {
    {.name = "Stmp", .text = &MailSettings::server},
    {.name = "EmailAddress", .text = &MailSettings::address},
    {.name = "Sender", .text = &MailSettings::sender},
    {.name = "UserID", .text = &MailSettings::userId},
    {.name = "Password", .text = &MailSettings::password},
    {.name = "Connection", .number = &MailSettings::connection},
    {.name = "ConnectionName", .text = &MailSettings::connectionName},
    {.name = "SmtpAttach", .number = &MailSettings::authenticates},
    {.name = "SmtpUserID", .text = &MailSettings::authenticationUserId},
    {.name = "SmtpPassword", .text = &MailSettings::authenticationPassword},
};

// Reading takes blanks from a value's ends, and then a pair of quotes: a password that has any gets such a
// pair.
std::string Kept(const std::string& value) {
  constexpr std::string_view kTaken = " \t\"'";
  const bool loses = !value.empty() && (kTaken.find(value.front()) != std::string_view::npos ||
                                        kTaken.find(value.back()) != std::string_view::npos);
  return loses ? '"' + value + '"' : value;
}

}  // namespace

MailSettings ReadMailSettings(const foundation::SettingsSnapshot& settings) {
  MailSettings read;
  for (const Key& key : kKeys) {
    if (key.text != nullptr)
      read.*key.text = settings.GetString(kMailSection, key.name, "");
    else
      read.*key.number = settings.GetInt(kMailSection, key.name, 0);
  }
  return read;
}

os::FileOutcome WriteMailSettings(foundation::SettingsStore& store, const MailSettings& settings) {
  for (const Key& key : kKeys) {
    const os::FileOutcome outcome = key.text != nullptr
                                        ? store.SetString(kMailSection, key.name, Kept(settings.*key.text))
                                        : store.SetInt(kMailSection, key.name, settings.*key.number);
    if (outcome != os::FileOutcome::kOk) return outcome;
  }
  return os::FileOutcome::kOk;
}

}  // namespace kova::mail
