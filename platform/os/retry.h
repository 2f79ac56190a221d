#pragma once

#include <cstdint>

namespace kova::os {

/// The clock, the pauses and the dice of RetryWhile; tests bring their own.
class RetryTiming {
 public:
  virtual ~RetryTiming() = default;
  /// Milliseconds from some fixed moment, never going back.
  virtual std::int64_t Now() = 0;
  virtual void Pause(int milliseconds) = 0;
  /// A random number from 0 to `most`.
  virtual int Random(int most) = 0;
};

/// The machine's own. Any thread may use it.
RetryTiming& SystemRetryTiming();

/// Decides how often, and after which pauses, something is tried again that another workstation was faster
/// with.
///
/// Bounded by time: attempts begin until about two seconds after the first refusal. A count would let a slow
/// machine run out while the winner's change is still on its way to it. Where the attempts themselves take so
/// long that the time would allow for only one or two, there are kFewestAttempts all the same.
///
/// Each pause is random between half of its limit and its limit, so that two workstations do not collide in
/// step; the limit doubles up to kLongestPause.
class RetryPacing {
 public:
  static constexpr int kFewestAttempts = 4;  // the first one counts
  static constexpr int kWindow = 2000;       // milliseconds, as the next
  static constexpr int kFirstPause = 10;
  static constexpr int kLongestPause = 250;

  explicit RetryPacing(RetryTiming& timing) : timing_(timing) {}

  /// After each refused attempt: waits and returns true when another one is due; returns false at once when
  /// it was the last.
  [[nodiscard]] bool WaitForNextAttempt();

 private:
  RetryTiming& timing_;
  int refusals_ = 0;
  std::int64_t firstRefusal_ = 0;
  int pauseLimit_ = kFirstPause;
};

/// Calls `attempt` again, as RetryPacing decides, while `isRefused(result)`. Returns the last result.
///
/// Not to be nested, since the bounds would multiply. Whoever begins a transaction retries all of it; what
/// runs within somebody else's transaction makes one attempt and passes the refusal up.
template <typename Attempt, typename IsRefused>
auto RetryWhile(Attempt attempt, IsRefused isRefused, RetryTiming& timing = SystemRetryTiming()) {
  RetryPacing pacing(timing);
  auto result = attempt();
  while (isRefused(result) && pacing.WaitForNextAttempt()) result = attempt();
  return result;
}

}  // namespace kova::os
