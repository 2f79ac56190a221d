#include "platform/os/thread.h"

#include <pthread.h>
#include <sched.h>

#include <ctime>
#include <utility>

namespace kova::os {
namespace {

timespec After(clockid_t clock, int milliseconds) {
  timespec end;
  clock_gettime(clock, &end);
  end.tv_sec += milliseconds / 1000;
  end.tv_nsec += milliseconds % 1000 * 1'000'000L;
  if (end.tv_nsec >= 1'000'000'000L) {
    end.tv_nsec -= 1'000'000'000L;
    ++end.tv_sec;
  }
  return end;
}

}  // namespace

struct Monitor::State {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t changed;
};

Monitor::Monitor() : state_(std::make_unique<State>()) {
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
  pthread_cond_init(&state_->changed, &attributes);
  pthread_condattr_destroy(&attributes);
}

Monitor::~Monitor() {
  pthread_cond_destroy(&state_->changed);
  pthread_mutex_destroy(&state_->mutex);
}

void Monitor::Enter() { pthread_mutex_lock(&state_->mutex); }
void Monitor::Leave() { pthread_mutex_unlock(&state_->mutex); }
void Monitor::Wait() { pthread_cond_wait(&state_->changed, &state_->mutex); }
void Monitor::Changed() { pthread_cond_broadcast(&state_->changed); }

bool Monitor::WaitFor(int milliseconds) {
  const timespec end = After(CLOCK_MONOTONIC, milliseconds);
  return pthread_cond_timedwait(&state_->changed, &state_->mutex, &end) == 0;
}

struct Thread::State {
  pthread_t handle{};
  bool isJoined = false;
};

Thread::Thread(std::unique_ptr<State> state) : state_(std::move(state)) {}

std::unique_ptr<Thread> Thread::Start(std::function<void()> work) {
  auto state = std::make_unique<State>();
  auto own = std::make_unique<std::function<void()>>(std::move(work));
  const auto run = [](void* argument) -> void* {
    const std::unique_ptr<std::function<void()>> mine(static_cast<std::function<void()>*>(argument));
    (*mine)();
    return nullptr;
  };
  if (pthread_create(&state->handle, nullptr, run, own.get()) != 0) return nullptr;
  own.release();
  return std::unique_ptr<Thread>(new Thread(std::move(state)));
}

Thread::~Thread() {
  if (!state_->isJoined) pthread_detach(state_->handle);
}

bool Thread::Join(int milliseconds) {
  const timespec end = After(CLOCK_REALTIME, milliseconds);
  state_->isJoined = pthread_timedjoin_np(state_->handle, nullptr, &end) == 0;
  return state_->isJoined;
}

void LetOthersRun() { sched_yield(); }

}  // namespace kova::os
