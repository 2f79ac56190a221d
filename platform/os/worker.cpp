#include "platform/os/worker.h"

#include <atomic>
#include <utility>

#include "platform/os/clock.h"
#include "platform/os/thread.h"

namespace kova::os {
namespace {

constexpr int kLongestGoodbye = 1000;  // ms

// Each side looks that often whether the other is ready, before it sleeps. An answer from the next room comes sooner than a
// sleeping thread wakes up: two awakenings would be a third of the time that a read takes.
constexpr int kGlances = 100;

}  // namespace

struct Worker::Shared {
  enum class State { kIdle, kGiven, kDone, kEnding };

  Monitor monitor;
  std::atomic<State> state{State::kIdle};  // changed under the monitor
  std::function<void()> work;

  void GlanceWhile(bool (*waits)(State)) const {
    for (int i = 0; i < kGlances && waits(state); ++i) LetOthersRun();
  }
  /// Leaves the monitor; whoever is woken finds it free.
  void SetAndLeave(State next) {
    state = next;
    monitor.Leave();
    monitor.Changed();
  }
  void Loop() {
    monitor.Enter();
    while (state != State::kEnding) {
      if (state != State::kGiven) {
        monitor.Wait();
        continue;
      }
      std::function<void()> given = std::exchange(work, nullptr);
      monitor.Leave();
      given();
      given = nullptr;  // what it holds is gone before its owner goes on
      monitor.Enter();
      if (state == State::kEnding) break;
      SetAndLeave(State::kDone);
      GlanceWhile([](State now) { return now == State::kDone; });
      monitor.Enter();
    }
    monitor.Leave();
  }
};

Worker::Worker() : shared_(std::make_shared<Shared>()) {}

std::unique_ptr<Worker> Worker::Start() {
  std::unique_ptr<Worker> worker(new Worker());
  worker->thread_ = Thread::Start([shared = worker->shared_] { shared->Loop(); });
  return worker->thread_ == nullptr ? nullptr : std::move(worker);
}

Worker::~Worker() {
  shared_->monitor.Enter();
  shared_->SetAndLeave(Shared::State::kEnding);
  // A driver may clean up behind a thread that ends, which is not to happen while the program ends, too. One that is
  // stuck is left to itself.
  if (thread_ != nullptr && !isLost_) (void)thread_->Join(kLongestGoodbye);
}

bool Worker::Run(std::function<void()> work, int milliseconds) {
  if (isLost_) return false;
  const std::int64_t end = MonotonicMilliseconds() + milliseconds;
  shared_->monitor.Enter();
  shared_->work = std::move(work);
  shared_->SetAndLeave(Shared::State::kGiven);
  shared_->GlanceWhile([](Shared::State now) { return now != Shared::State::kDone; });
  shared_->monitor.Enter();
  while (shared_->state != Shared::State::kDone && !isLost_) {
    const std::int64_t left = end - MonotonicMilliseconds();
    isLost_ = left <= 0;
    if (!isLost_) (void)shared_->monitor.WaitFor(static_cast<int>(left));
  }
  shared_->monitor.Leave();
  return !isLost_;
}

}  // namespace kova::os
