#include "platform/os/application_profile.h"

#include <utility>

#include "platform/os/profile_file.h"
#include "platform/os/profile_text.h"

namespace kova::os {
namespace {

constexpr std::size_t kValueLimit = 4095;

// The profile's functions know no failure: what cannot be read gives defaults.
ProfileText Open(Files& files, std::string_view path) {
  std::string content;
  const bool isRead = ReadProfileFile(files, path, content) == FileOutcome::kOk;
  return ProfileText(isRead ? std::move(content) : std::string());
}

}  // namespace

IniApplicationProfile::IniApplicationProfile(Files& files, std::string path)
    : files_(files), path_(std::move(path)) {}

std::string IniApplicationProfile::GetString(std::string_view section, std::string_view key,
                                             std::string_view defaultValue) const {
  const ProfileText text = Open(files_, path_);
  return std::string(text.Find(section, key).value_or(defaultValue).substr(0, kValueLimit));
}

std::int32_t IniApplicationProfile::GetInt(std::string_view section, std::string_view key,
                                           std::int32_t defaultValue) const {
  const ProfileText text = Open(files_, path_);
  const std::string_view value = text.Find(section, key).value_or("");
  return value.empty() ? defaultValue : ProfileInt(value);
}

bool IniApplicationProfile::WriteString(std::string_view section, std::string_view key,
                                        std::string_view value) {
  return UpdateProfileFile(files_, path_, section, key, value) == FileOutcome::kOk;
}

bool IniApplicationProfile::WriteInt(std::string_view section, std::string_view key, std::int32_t value) {
  return WriteString(section, key, std::to_string(value));
}

}  // namespace kova::os
