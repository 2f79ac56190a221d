#pragma once

// What the user's desktop does for the library.

#include <string_view>

namespace kova::os {

class Shell {
 public:
  virtual ~Shell() = default;
  /// Opens a file with the program that the user has for its kind; false when that cannot be started.
  virtual bool Open(std::string_view path) = 0;
};

/// The desktop of the machine; without one nothing opens.
Shell& RealShell();

}  // namespace kova::os
