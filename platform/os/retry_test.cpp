#include "platform/os/retry.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/os/testing/fake_retry_timing.h"

namespace kova::os {
namespace {

using testing::FakeRetryTiming;

// Every attempt takes `duration` and is refused, but the one of number `wins`; the result is the attempt's
// number.
struct Attempts {
  FakeRetryTiming& timing;
  int duration;
  int wins = 0;
  int made = 0;

  int Run() {
    return RetryWhile(
        [this] {
          timing.now += duration;
          return ++made;
        },
        [this](int result) { return result != wins; }, timing);
  }
};

TEST(RetryWhile, EndsWithTheFirstResultThatIsNotRefused) {
  FakeRetryTiming timing;
  Attempts atOnce{timing, 5, 1}, third{timing, 5, 3};
  EXPECT_EQ(atOnce.Run(), 1);
  EXPECT_TRUE(timing.pauses.empty());
  EXPECT_EQ(third.Run(), 3);
  EXPECT_EQ(timing.pauses.size(), 2u);
}

TEST(RetryWhile, IsBoundedByTimeAndNotByCount) {
  const struct {
    int duration, fewest, most;  // of an attempt in milliseconds; attempts
  } rows[] = {{0, 10, 30}, {100, 8, 15}, {500, 4, 5}, {1999, 4, 4}, {30000, 4, 4}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.duration);
    FakeRetryTiming timing;
    Attempts attempts{timing, row.duration};
    const std::int64_t begun = timing.now;
    EXPECT_EQ(attempts.Run(), attempts.made);  // the last one's
    EXPECT_GE(attempts.made, row.fewest);
    EXPECT_LE(attempts.made, row.most);
    EXPECT_EQ(timing.pauses.size(), static_cast<std::size_t>(attempts.made - 1));  // none after the last one
    const std::int64_t sinceRefusal = timing.now - begun - row.duration;
    EXPECT_GE(sinceRefusal, RetryPacing::kWindow);
    if (attempts.made > RetryPacing::kFewestAttempts) {
      EXPECT_LE(sinceRefusal, RetryPacing::kWindow + RetryPacing::kLongestPause + row.duration);
    }
  }
}

TEST(RetryWhile, PausesGrowToALimitAndDifferByHalf) {
  FakeRetryTiming longest, shortest;
  shortest.dice = 0;
  (void)Attempts{longest, 0}.Run();
  (void)Attempts{shortest, 0}.Run();
  ASSERT_GE(shortest.pauses.size(), longest.pauses.size());
  for (std::size_t i = 0; i < longest.pauses.size(); ++i) {
    EXPECT_EQ(shortest.pauses[i], longest.pauses[i] / 2) << i;
    EXPECT_GT(shortest.pauses[i], 0) << i;
    const int limit = i == 0 ? RetryPacing::kFirstPause : longest.pauses[i - 1] * 2;
    EXPECT_EQ(longest.pauses[i], std::min(limit, RetryPacing::kLongestPause)) << i;
  }
  EXPECT_EQ(longest.pauses.back(), RetryPacing::kLongestPause);
}

TEST(SystemRetryTiming, RollsEveryNumberFromNoneToTheMost) {
  bool seen[4] = {};
  for (int i = 0; i < 1000; ++i) {
    const int rolled = SystemRetryTiming().Random(3);
    ASSERT_TRUE(rolled >= 0 && rolled <= 3) << rolled;
    seen[rolled] = true;
  }
  EXPECT_TRUE(std::all_of(std::begin(seen), std::end(seen), [](bool each) { return each; }));
}

}  // namespace
}  // namespace kova::os
