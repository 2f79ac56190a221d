#pragma once

// Threads and waiting, as far as the platform rooms need them. (The standard library's headers for them do not compile with
// literals in code page 932.)

#include <functional>
#include <memory>

namespace kova::os {

/// A lock, and waiting for what is changed under it.
class Monitor {
 public:
  Monitor();
  ~Monitor();
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  void Enter();
  void Leave();
  /// Gives the lock up until somebody called Changed, and takes it again; may also come back without a reason.
  void Wait();
  /// The same for at most that long; false when it was longer.
  bool WaitFor(int milliseconds);
  /// Wakes all who wait.
  void Changed();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

class Thread {
 public:
  /// Null when the system gives no thread. `work` must not throw; its code stays loaded while it runs.
  static std::unique_ptr<Thread> Start(std::function<void()> work);
  /// Leaves the thread to itself.
  ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  /// Waits for its end; false when that takes longer than `milliseconds`. Once.
  [[nodiscard]] bool Join(int milliseconds);

 private:
  struct State;
  explicit Thread(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

/// Lets another thread go first, if one waits for the processor.
void LetOthersRun();

}  // namespace kova::os
