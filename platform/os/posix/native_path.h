#pragma once

#include <string>
#include <string_view>

#include "platform/text932/cp932.h"

namespace kova::os {

/// A path of code page 932 as this system's: UTF-8 with "/". A NUL ends no path here: such a path names
/// nothing.
inline std::string NativePath(std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return {};
  return text932::ToUtf8(text932::ReplaceAll(path, "\\", "/"));
}

}  // namespace kova::os
