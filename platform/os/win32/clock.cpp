#include "platform/os/clock.h"

#include <windows.h>

namespace kova::os {

std::int64_t MonotonicMilliseconds() { return static_cast<std::int64_t>(GetTickCount64()); }

std::int64_t UtcMilliseconds() {
  FILETIME now{};
  GetSystemTimePreciseAsFileTime(&now);
  const auto ticks = static_cast<std::int64_t>(now.dwHighDateTime) << 32 | now.dwLowDateTime;
  constexpr std::int64_t k1970 = 116444736000000000;  // in units of 100 ns since 1601
  return (ticks - k1970) / 10000;
}

std::tm LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  localtime_s(&local, &now);
  return local;
}

void SleepMilliseconds(int duration) { Sleep(static_cast<DWORD>(duration)); }

}  // namespace kova::os
