#include "foundation/settings.h"

#include "foundation/number_text.h"

namespace kova::foundation {
namespace {

constexpr std::size_t kValueLimit = 999;  // other programs read with the same buffer; do not change

}  // namespace

SettingsSnapshot::SettingsSnapshot(std::string content) : text_(std::move(content)) {}

SettingsSnapshot SettingsSnapshot::Unreadable() {
  SettingsSnapshot settings{std::string()};
  settings.isReadable_ = false;
  return settings;
}

std::string SettingsSnapshot::GetString(std::string_view section, std::string_view key,
                                        std::string_view defaultValue) const {
  if (const auto value = text_.Find(section, key)) return std::string(value->substr(0, kValueLimit));
  while (defaultValue.ends_with(' ')) defaultValue.remove_suffix(1);
  return std::string(defaultValue.substr(0, kValueLimit));
}

int SettingsSnapshot::GetInt(std::string_view section, std::string_view key, int defaultValue) const {
  const auto value = text_.Find(section, key);
  return value ? ReadInteger(value->substr(0, kValueLimit)) : defaultValue;
}

}  // namespace kova::foundation
