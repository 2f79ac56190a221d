#include "platform/os/worker.h"

#include <windows.h>
#include <process.h>

#include <utility>

#include "platform/os/clock.h"

namespace kova::os {

struct Worker::Shared {
  enum class State { kIdle, kGiven, kDone, kEnding };

  void Set(State next) {
    AcquireSRWLockExclusive(&lock);
    state = next;
    WakeAllConditionVariable(&changed);
    ReleaseSRWLockExclusive(&lock);
  }

  SRWLOCK lock = SRWLOCK_INIT;
  CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
  State state = State::kIdle;
  std::function<void()> work;

  void Work() {
    for (;;) {
      AcquireSRWLockExclusive(&lock);
      while (state != State::kGiven && state != State::kEnding)
        SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
      const bool ends = state == State::kEnding;
      std::function<void()> given = std::exchange(work, nullptr);
      ReleaseSRWLockExclusive(&lock);
      if (ends) return;
      given();
      given = nullptr;  // what it holds is gone before its owner goes on
      AcquireSRWLockExclusive(&lock);
      const bool ending = state == State::kEnding;
      if (!ending) state = State::kDone;
      WakeAllConditionVariable(&changed);
      ReleaseSRWLockExclusive(&lock);
      if (ending) return;
    }
  }

  static unsigned __stdcall Loop(void* argument) {
    std::unique_ptr<std::shared_ptr<Shared>> own(static_cast<std::shared_ptr<Shared>*>(argument));
    (*own)->Work();
    own.reset();
    // The code that runs here must not be unloaded under a call that has not come back yet.
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&Shared::Loop), &module);
    FreeLibraryAndExitThread(module, 0);
  }
};

Worker::Worker(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

std::unique_ptr<Worker> Worker::Start() {
  auto shared = std::make_shared<Shared>();
  auto argument = std::make_unique<std::shared_ptr<Shared>>(shared);
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<const wchar_t*>(&Shared::Loop), &module);
  const auto thread = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &Shared::Loop, argument.get(), 0, nullptr));
  if (thread == nullptr) {
    FreeLibrary(module);
    return nullptr;
  }
  argument.release();
  CloseHandle(thread);
  return std::unique_ptr<Worker>(new Worker(std::move(shared)));
}

Worker::~Worker() { shared_->Set(Shared::State::kEnding); }

bool Worker::Run(std::function<void()> work, int milliseconds) {
  if (isLost_) return false;
  const std::int64_t end = MonotonicMilliseconds() + milliseconds;
  Shared& shared = *shared_;
  AcquireSRWLockExclusive(&shared.lock);
  shared.work = std::move(work);
  shared.state = Shared::State::kGiven;
  WakeAllConditionVariable(&shared.changed);
  while (shared.state != Shared::State::kDone) {
    const std::int64_t left = end - MonotonicMilliseconds();
    if (left <= 0) break;
    SleepConditionVariableSRW(&shared.changed, &shared.lock, static_cast<DWORD>(left), 0);
  }
  isLost_ = shared.state != Shared::State::kDone;
  ReleaseSRWLockExclusive(&shared.lock);
  return !isLost_;
}

}  // namespace kova::os
