#pragma once

#include <windows.h>

namespace kova::window {

/// While it lives, windows of this thread have the system's current looks, whatever the host's manifest says.
class Themed {
 public:
  Themed();
  Themed(const Themed&) = delete;
  Themed& operator=(const Themed&) = delete;
  ~Themed();

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
};

}  // namespace kova::window
