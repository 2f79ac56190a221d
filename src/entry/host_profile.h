#pragma once

#include "platform/os/application_profile.h"

namespace kova::entry {

/// The host application's profile, through its application object. Without one every read gives its default
/// and nothing can be written.
class HostProfile final : public os::ApplicationProfile {
 public:
  std::string GetString(std::string_view section, std::string_view key,
                        std::string_view defaultValue) const override;
  std::int32_t GetInt(std::string_view section, std::string_view key,
                      std::int32_t defaultValue) const override;
  bool WriteString(std::string_view section, std::string_view key, std::string_view value) override;
  bool WriteInt(std::string_view section, std::string_view key, std::int32_t value) override;
};

}  // namespace kova::entry
