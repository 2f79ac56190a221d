#include "platform/os/clock.h"

#include <windows.h>

namespace kova::os {

std::int64_t MonotonicMilliseconds() { return static_cast<std::int64_t>(GetTickCount64()); }

std::tm LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  localtime_s(&local, &now);
  return local;
}

void SleepMilliseconds(int duration) { Sleep(static_cast<DWORD>(duration)); }

}  // namespace kova::os
