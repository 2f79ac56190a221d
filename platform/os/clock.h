#pragma once

#include <cstdint>
#include <ctime>

namespace kova::os {

/// Milliseconds from some fixed moment, never going back; for measuring waits.
std::int64_t MonotonicMilliseconds();

/// Date and time now, as the machine's clock shows them.
std::tm LocalTime();

/// Milliseconds since 1970-01-01 00:00 UTC, as the machine's clock shows them.
std::int64_t UtcMilliseconds();

/// Lets other programs run for about that long.
void SleepMilliseconds(int duration);

}  // namespace kova::os
