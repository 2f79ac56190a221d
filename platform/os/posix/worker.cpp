#include "platform/os/worker.h"

#include <pthread.h>

#include <cerrno>
#include <ctime>
#include <utility>

namespace kova::os {

struct Worker::Shared {
  enum class State { kIdle, kGiven, kDone, kEnding };

  Shared() {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&changed, &attributes);
    pthread_condattr_destroy(&attributes);
  }
  ~Shared() {
    pthread_cond_destroy(&changed);
    pthread_mutex_destroy(&mutex);
  }
  void Set(State next) {
    pthread_mutex_lock(&mutex);
    state = next;
    pthread_cond_broadcast(&changed);
    pthread_mutex_unlock(&mutex);
  }

  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t changed;
  State state = State::kIdle;
  std::function<void()> work;

  static void* Loop(void* argument) {
    const std::unique_ptr<std::shared_ptr<Shared>> own(static_cast<std::shared_ptr<Shared>*>(argument));
    Shared& shared = **own;
    for (;;) {
      pthread_mutex_lock(&shared.mutex);
      while (shared.state != State::kGiven && shared.state != State::kEnding)
        pthread_cond_wait(&shared.changed, &shared.mutex);
      const bool ends = shared.state == State::kEnding;
      std::function<void()> work = std::exchange(shared.work, nullptr);
      pthread_mutex_unlock(&shared.mutex);
      if (ends) return nullptr;
      work();
      work = nullptr;  // what it holds is gone before its owner goes on
      pthread_mutex_lock(&shared.mutex);
      const bool ending = shared.state == State::kEnding;
      if (!ending) shared.state = State::kDone;
      pthread_cond_broadcast(&shared.changed);
      pthread_mutex_unlock(&shared.mutex);
      if (ending) return nullptr;
    }
  }
};

Worker::Worker(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

std::unique_ptr<Worker> Worker::Start() {
  auto shared = std::make_shared<Shared>();
  auto argument = std::make_unique<std::shared_ptr<Shared>>(shared);
  pthread_t thread;
  if (pthread_create(&thread, nullptr, &Shared::Loop, argument.get()) != 0) return nullptr;
  argument.release();
  pthread_detach(thread);
  return std::unique_ptr<Worker>(new Worker(std::move(shared)));
}

Worker::~Worker() { shared_->Set(Shared::State::kEnding); }

bool Worker::Run(std::function<void()> work, int milliseconds) {
  if (isLost_) return false;
  timespec end;
  clock_gettime(CLOCK_MONOTONIC, &end);
  end.tv_sec += milliseconds / 1000;
  end.tv_nsec += milliseconds % 1000 * 1'000'000L;
  if (end.tv_nsec >= 1'000'000'000L) {
    end.tv_nsec -= 1'000'000'000L;
    ++end.tv_sec;
  }
  Shared& shared = *shared_;
  pthread_mutex_lock(&shared.mutex);
  shared.work = std::move(work);
  shared.state = Shared::State::kGiven;
  pthread_cond_broadcast(&shared.changed);
  int code = 0;
  while (shared.state != Shared::State::kDone && code != ETIMEDOUT)
    code = pthread_cond_timedwait(&shared.changed, &shared.mutex, &end);
  isLost_ = shared.state != Shared::State::kDone;
  pthread_mutex_unlock(&shared.mutex);
  return !isLost_;
}

}  // namespace kova::os
