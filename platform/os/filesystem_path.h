#pragma once

#include <filesystem>
#include <string_view>

namespace kova::os {

/// A path of code page 932 bytes with '\' between its parts, as the platform's own path: UTF-16 on Windows;
/// UTF-8 with
/// '/' elsewhere.
std::filesystem::path ToFilesystemPath(std::string_view path);

}  // namespace kova::os
