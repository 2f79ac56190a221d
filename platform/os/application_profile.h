#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/os/files.h"

namespace kova::os {

/// The calling application's per-workstation profile. Who the application is decides where it is kept.
class ApplicationProfile {
 public:
  virtual ~ApplicationProfile() = default;

  /// The text of `key` in `section`; the default when there is none.
  virtual std::string GetString(std::string_view section, std::string_view key,
                                std::string_view defaultValue) const = 0;

  /// The number of `key` in `section`; the default when there is none.
  virtual std::int32_t GetInt(std::string_view section, std::string_view key,
                              std::int32_t defaultValue) const = 0;

  /// Stores; false when it could not be stored.
  virtual bool WriteString(std::string_view section, std::string_view key, std::string_view value) = 0;
  virtual bool WriteInt(std::string_view section, std::string_view key, std::int32_t value) = 0;
};

/// A profile in an ini file. Every call reads the file anew and sees what others wrote.
class IniApplicationProfile final : public ApplicationProfile {
 public:
  /// `files` must outlive this object. The file need not exist; the first writing makes it.
  IniApplicationProfile(Files& files, std::string path);

  /// At most 4,095 bytes, as the platform's application class reads it.
  std::string GetString(std::string_view section, std::string_view key,
                        std::string_view defaultValue) const override;

  /// The default also for a key with an empty value, 0 for a text that is no number; "0x1F" is a number.
  std::int32_t GetInt(std::string_view section, std::string_view key,
                      std::int32_t defaultValue) const override;

  bool WriteString(std::string_view section, std::string_view key, std::string_view value) override;
  bool WriteInt(std::string_view section, std::string_view key, std::int32_t value) override;

 private:
  Files& files_;
  std::string path_;
};

}  // namespace kova::os
