#include "window/work_dialog.h"

#include <windows.h>
#include <commctrl.h>
#include <process.h>

#include <new>
#include <utility>

namespace kova::window {
namespace {

constexpr DWORD kShortWork = 150;  // milliseconds
constexpr UINT kInterval = 30;     // milliseconds between two looks
constexpr int kSteps = 1000;       // of the bar
constexpr UINT_PTR kTimer = 1;

class Locked {
 public:
  explicit Locked(SRWLOCK& lock) : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked() { ReleaseSRWLockExclusive(&lock_); }

 private:
  SRWLOCK& lock_;
};

}  // namespace

WorkDialog::WorkDialog(std::string_view title, Kind kind) : Dialog(title, {400, 0}), kind_(kind) {}

bool WorkDialog::Run(HWND parent, Work work) {
  work_ = std::move(work);
  thread_ = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &WorkDialog::Thread, this, 0, nullptr));
  if (thread_ == nullptr) throw std::bad_alloc();
  if (WaitForSingleObject(thread_, kShortWork) == WAIT_TIMEOUT) RunModal(parent);
  WaitForSingleObject(thread_, INFINITE);  // also where the dialog could not be shown
  CloseHandle(std::exchange(thread_, nullptr));
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  return !isStopped_;
}

unsigned __stdcall WorkDialog::Thread(void* self) noexcept {
  auto& dialog = *static_cast<WorkDialog*>(self);
  try {
    dialog.work_(dialog);
  } catch (...) {
    dialog.failure_ = std::current_exception();
  }
  return 0;
}

void WorkDialog::AddControls() {
  AddLabel(kPhase, "", SS_LEFT | SS_NOPREFIX);
  AddOther(kBar, PROGRESS_CLASSW, kind_ == Kind::kWaiting ? PBS_MARQUEE : PBS_SMOOTH, 0);
  if (kind_ == Kind::kStoppable) AddButton(IDCANCEL, "キャンセル");
}

Box WorkDialog::Arrange() const {
  std::vector<Box> rows = {AtLeast(kPhase, {360, 18}), AtLeast(kBar, {360, 20})};
  rows[1].least.height = Dip(20);
  if (kind_ == Kind::kStoppable) rows.push_back(Row(0, {Space(0, 0).Stretch(), AtLeast(IDCANCEL, {90, 0})}));
  return Column(Dip(10), std::move(rows)).Margin(Dip(16));
}

void WorkDialog::OnStart() {
  SendMessageW(Item(kBar), PBM_SETRANGE32, 0, kSteps);
  if (kind_ == Kind::kWaiting) SendMessageW(Item(kBar), PBM_SETMARQUEE, TRUE, 0);
  SetTimer(Handle(), kTimer, kInterval, nullptr);
  ShowProgress();
}

void WorkDialog::OnTimer(UINT_PTR) {
  ShowProgress();
  if (WaitForSingleObject(thread_, 0) == WAIT_OBJECT_0) Close(IDOK);
}

// The dialog closes when the work has ended, and that is soon.
void WorkDialog::OnCancel() {
  if (kind_ == Kind::kStoppable) isStopped_ = true;
}

void WorkDialog::Begin(std::string_view text, double from, double to) {
  const Locked locked(phaseLock_);
  phase_ = text;
  from_ = from;
  to_ = to;
  done_ = from;
}

bool WorkDialog::Report(double done) {
  done_ = from_ + (to_ - from_) * done;
  return !isStopped_;
}

void WorkDialog::ShowProgress() {
  {
    const Locked locked(phaseLock_);
    ShowIfChanged(kPhase, phase_);
  }
  const auto place = static_cast<WPARAM>(done_ * kSteps);
  const auto before = static_cast<WPARAM>(SendMessageW(Item(kBar), PBM_GETPOS, 0, 0));
  if (kind_ == Kind::kStoppable && place != before) SendMessageW(Item(kBar), PBM_SETPOS, place, 0);
}

}  // namespace kova::window
