#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace kova::testing {

/// A folder of its own for one test, removed with everything in it.
class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("kova-" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  /// As the library's operations take it: ASCII only, with a trailing delimiter.
  std::string Text() const {
    return path_.string() + static_cast<char>(std::filesystem::path::preferred_separator);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace kova::testing
