#pragma once

// A real folder for one test, named in Japanese with 0x5C as a second byte; removed with all that it holds.

#include <filesystem>
#include <string>

#include "platform/os/filesystem_path.h"
#include "platform/text932/cp932.h"

namespace kova::os::testing {

class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& name) {
    const std::filesystem::path base = std::filesystem::temp_directory_path();
#ifdef _WIN32
    const std::wstring wide = base.wstring();
    const bool known = text932::FromUtf16(std::u16string(wide.begin(), wide.end()), path_);
#else
    const bool known = text932::FromUtf8(base.string() + "/", path_);
    path_ = text932::ReplaceAll(path_, "/", "\\");
#endif
    if (!known) path_ = ".\\";
    path_ += "kova_表_" + name + "\\";
    std::filesystem::remove_all(Native());
    std::filesystem::create_directories(Native());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(Native(), ignored);
  }

  /// The folder in code page 932, "\" at its end.
  const std::string& Path() const { return path_; }
  std::filesystem::path Native() const { return ToFilesystemPath(path_); }
  /// As a program's argument: the system's own path in UTF-8.
  std::string Argument() const {
    const std::u8string utf8 = Native().u8string();
    return {utf8.begin(), utf8.end()};
  }

 private:
  std::string path_;
};

}  // namespace kova::os::testing
