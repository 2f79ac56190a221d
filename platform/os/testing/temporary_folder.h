#pragma once

// A real folder for one test, named in Japanese with 0x5C as a second byte; removed with all that it holds.

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <system_error>

#include "platform/os/clock.h"
#include "platform/os/filesystem_path.h"
#include "platform/text932/cp932.h"

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace kova::os::testing {

/// Each object has a folder of its own, whatever else runs on this machine: `name` in it is for the reader.
/// Throws when the folder cannot be made.
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
    const std::string beginning = path_ + "kova_表_" + name + "_";
    do path_ = beginning + Unique() + "\\";
    while (!std::filesystem::create_directory(Native()));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    // On Windows a program that has just ended, or one that looks for viruses, may still hold a file.
    const std::int64_t deadline = MonotonicMilliseconds() + 3000;
    std::error_code error;
    while (std::filesystem::remove_all(Native(), error), error && MonotonicMilliseconds() < deadline)
      SleepMilliseconds(20);
    if (error) std::fprintf(stderr, "cannot remove %s: error %d\n", Argument().c_str(), error.value());
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
  /// Short, as some of the system's functions take 260 characters of a path only.
  static std::string Unique() {
    static std::atomic<unsigned> count{0};
#ifdef _WIN32
    const int process = _getpid();
#else
    const int process = getpid();
#endif
    char text[40];
    std::snprintf(text, sizeof text, "%x-%x-%08x", static_cast<unsigned>(process), ++count,
                  std::random_device{}());
    return text;
  }

  std::string path_;
};

}  // namespace kova::os::testing
