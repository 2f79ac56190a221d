#include "platform/os/clock.h"

#include <time.h>

namespace kova::os {

std::int64_t MonotonicMilliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

std::int64_t UtcMilliseconds() {
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

std::tm LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  localtime_r(&now, &local);
  return local;
}

void SleepMilliseconds(int duration) {
  const timespec span = {duration / 1000, duration % 1000 * 1000000L};
  nanosleep(&span, nullptr);
}

}  // namespace kova::os
