#pragma once

#include <windows.h>

#include <utility>

namespace kova::os {

/// Owns a kernel object's handle; INVALID_HANDLE_VALUE is none.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  Handle& operator=(Handle&&) = delete;
  ~Handle() {
    if (Valid()) CloseHandle(handle_);
  }
  HANDLE Get() const { return handle_; }
  bool Valid() const { return handle_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE handle_;
};

}  // namespace kova::os
