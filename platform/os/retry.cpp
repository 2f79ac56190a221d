#include "platform/os/retry.h"

#include <algorithm>
#include <random>

#include "platform/os/clock.h"

namespace kova::os {
namespace {

struct MachineTiming final : RetryTiming {
  std::int64_t Now() override { return MonotonicMilliseconds(); }
  void Pause(int milliseconds) override { SleepMilliseconds(milliseconds); }
  // Straight from the system: a seed of our own could be the same on two workstations.
  int Random(int most) override {
    std::random_device device;
    return std::uniform_int_distribution<int>(0, most)(device);
  }
};

}  // namespace

RetryTiming& SystemRetryTiming() {
  static MachineTiming timing;
  return timing;
}

bool RetryPacing::WaitForNextAttempt() {
  const std::int64_t now = timing_.Now();
  if (++refusals_ == 1) firstRefusal_ = now;
  if (refusals_ >= kFewestAttempts && now - firstRefusal_ >= kWindow) return false;
  const int shortest = pauseLimit_ / 2;
  timing_.Pause(shortest + timing_.Random(pauseLimit_ - shortest));
  pauseLimit_ = std::min(pauseLimit_ * 2, kLongestPause);
  return true;
}

}  // namespace kova::os
