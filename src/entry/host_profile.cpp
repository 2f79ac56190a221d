#include "entry/host_profile.h"

#include <afxwin.h>

#include <string>

namespace kova::entry {

std::string HostProfile::GetString(std::string_view section, std::string_view key,
                                   std::string_view defaultValue) const {
  CWinApp* app = AfxGetApp();
  if (app == nullptr) return std::string(defaultValue);
  return app
      ->GetProfileString(std::string(section).c_str(), std::string(key).c_str(),
                         std::string(defaultValue).c_str())
      .GetString();
}

std::int32_t HostProfile::GetInt(std::string_view section, std::string_view key,
                                 std::int32_t defaultValue) const {
  CWinApp* app = AfxGetApp();
  if (app == nullptr) return defaultValue;
  return static_cast<std::int32_t>(
      app->GetProfileInt(std::string(section).c_str(), std::string(key).c_str(), defaultValue));
}

bool HostProfile::WriteString(std::string_view section, std::string_view key, std::string_view value) {
  CWinApp* app = AfxGetApp();
  return app != nullptr && app->WriteProfileString(std::string(section).c_str(), std::string(key).c_str(),
                                                   std::string(value).c_str()) != 0;
}

bool HostProfile::WriteInt(std::string_view section, std::string_view key, std::int32_t value) {
  CWinApp* app = AfxGetApp();
  return app != nullptr &&
         app->WriteProfileInt(std::string(section).c_str(), std::string(key).c_str(), value) != 0;
}

}  // namespace kova::entry
