#include "platform/os/clock.h"

#include <windows.h>

namespace kova::os {

std::int64_t MonotonicMilliseconds() { return static_cast<std::int64_t>(GetTickCount64()); }

void SleepMilliseconds(int duration) { Sleep(static_cast<DWORD>(duration)); }

}  // namespace kova::os
