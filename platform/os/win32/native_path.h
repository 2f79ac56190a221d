#pragma once

#include <string>
#include <string_view>

namespace kova::os {

/// A path of code page 932 for the platform's wide functions. A path too long for the old limit is made
/// absolute and marked as a long one. Empty when the path is, or when a NUL stands in it: it then names
/// nothing.
std::wstring NativePath(std::string_view path);

}  // namespace kova::os
