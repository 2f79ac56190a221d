#pragma once

// What the exported operations have in common: texts in and out, their surroundings, no exception beyond
// them.

#include <afx.h>

#include <string>
#include <string_view>

#include "entry/host_profile.h"
#include "foundation/settings_store.h"
#include "platform/os/files.h"

namespace kova::entry {

inline std::string_view View(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

inline CString ToCString(std::string_view text) { return CString(std::string(text).c_str()); }

/// What an operation works with; made anew for each call, so that each sees profile and settings as they are.
struct Session {
  HostProfile profile;
  os::Files& files = os::RealFiles();
  foundation::SettingsStore settings{profile, files};
};

/// The one place where an exception becomes the answer for "nothing there".
template <typename Result, typename Operation>
Result Guarded(Result nothing, Operation operation) {
  try {
    return operation();
  } catch (...) {
    return nothing;
  }
}

}  // namespace kova::entry
