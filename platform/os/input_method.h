#pragma once

#include <optional>
#include <string>

namespace kova::os {

/// What the input method has just put into a window.
struct CommittedInput {
  std::string text;  // as typed into the window
  std::string
      reading;  // its reading, as the input method gives it (single-byte kana by custom); may be empty
};

/// The platform's input method, seen from one window.
class InputMethod {
 public:
  virtual ~InputMethod() = default;

  /// The result that the composition in `window` (a native window handle) has just committed, in code page
  /// 932; a character that the code page lacks becomes "?". Nothing when the window has no input method or
  /// nothing was committed. Ask while the commit is being reported.
  virtual std::optional<CommittedInput> Committed(void* window) = 0;
};

/// The system's own input method (Windows only). It keeps no state.
InputMethod& SystemInputMethod();

}  // namespace kova::os
