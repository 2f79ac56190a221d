#pragma once

#include <cstdint>

namespace kova::os {

/// Milliseconds from some fixed moment, never going back; for measuring waits.
std::int64_t MonotonicMilliseconds();

/// Lets other programs run for about that long.
void SleepMilliseconds(int duration);

}  // namespace kova::os
