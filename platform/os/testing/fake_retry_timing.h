#pragma once

// Time for RetryWhile that passes only when a test, or a pause, says so.

#include <vector>

#include "platform/os/retry.h"

namespace kova::os::testing {

class FakeRetryTiming final : public RetryTiming {
 public:
  std::int64_t now = 1'000'000;
  std::vector<int> pauses;
  int dice = 100;  // percent of the largest number that Random could give

  std::int64_t Now() override { return now; }
  void Pause(int milliseconds) override {
    pauses.push_back(milliseconds);
    now += milliseconds;
  }
  int Random(int most) override { return most * dice / 100; }
};

}  // namespace kova::os::testing
