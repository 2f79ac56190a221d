#include "platform/os/thread.h"

#include <windows.h>
#include <process.h>

#include <utility>

#include "platform/os/win32/handle.h"

namespace kova::os {

struct Monitor::State {
  SRWLOCK lock = SRWLOCK_INIT;
  CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
};

Monitor::Monitor() : state_(std::make_unique<State>()) {}
Monitor::~Monitor() = default;
void Monitor::Enter() { AcquireSRWLockExclusive(&state_->lock); }
void Monitor::Leave() { ReleaseSRWLockExclusive(&state_->lock); }
void Monitor::Wait() { SleepConditionVariableSRW(&state_->changed, &state_->lock, INFINITE, 0); }
void Monitor::Changed() { WakeAllConditionVariable(&state_->changed); }

bool Monitor::WaitFor(int milliseconds) {
  return SleepConditionVariableSRW(&state_->changed, &state_->lock, static_cast<DWORD>(milliseconds), 0) != FALSE;
}

struct Thread::State {
  Handle handle;
};

Thread::Thread(std::unique_ptr<State> state) : state_(std::move(state)) {}
Thread::~Thread() = default;

namespace {

unsigned __stdcall Run(void* argument) {
  std::unique_ptr<std::function<void()>> mine(static_cast<std::function<void()>*>(argument));
  (*mine)();
  mine.reset();
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&Run), &module);
  FreeLibraryAndExitThread(module, 0);
}

}  // namespace

std::unique_ptr<Thread> Thread::Start(std::function<void()> work) {
  auto own = std::make_unique<std::function<void()>>(std::move(work));
  // Held until the thread ends: the code that runs there must not be unloaded under it.
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const wchar_t*>(&Run), &module);
  const auto handle = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &Run, own.get(), 0, nullptr));
  if (handle == nullptr) {
    FreeLibrary(module);
    return nullptr;
  }
  own.release();
  return std::unique_ptr<Thread>(new Thread(std::unique_ptr<State>(new State{Handle(handle)})));
}

bool Thread::Join(int milliseconds) {
  return WaitForSingleObject(state_->handle.Get(), static_cast<DWORD>(milliseconds)) == WAIT_OBJECT_0;
}

void LetOthersRun() { SwitchToThread(); }

}  // namespace kova::os
