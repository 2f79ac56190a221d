#pragma once

#include <functional>
#include <memory>

namespace kova::os {

class Thread;

/// A thread for calls that may never come back (a driver that waits for a machine that is gone). Its owner waits
/// for each piece of work, but not longer than he wants to.
///
/// Used by one thread. Destroying it waits for no piece of work that hangs: that one ends whenever its call comes back, so it
/// must own everything that it touches.
class Worker {
 public:
  /// Null when the system gives no thread.
  static std::unique_ptr<Worker> Start();
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  /// Runs `work` on the thread and waits for its end. False when it takes longer than `milliseconds`: the worker is then of
  /// no further use. `work` must not throw.
  [[nodiscard]] bool Run(std::function<void()> work, int milliseconds);

 private:
  struct Shared;
  Worker();

  std::shared_ptr<Shared> shared_;
  std::unique_ptr<Thread> thread_;
  bool isLost_ = false;
};

}  // namespace kova::os
