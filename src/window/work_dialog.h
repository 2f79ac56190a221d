#pragma once

// Long work behind a small dialog that shows how far it is. The work runs on a thread of its own, so the
// windows stay alive whatever it waits for.

#include <windows.h>

#include <atomic>
#include <exception>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/progress.h"
#include "window/dialog.h"

namespace kova::window {

class WorkDialog final : public Dialog, private foundation::Progress {
 public:
  enum Id { kPhase = 100, kBar };
  using Work = std::function<void(foundation::Progress&)>;

  /// How the work can be followed: by a bar and a button that stops it, or neither.
  enum class Kind { kStoppable, kWaiting };

  WorkDialog(std::string_view title, Kind kind);

  /// Runs `work` to its end, which it is to reach soon after Report gave false. Short work shows no dialog.
  /// True unless the user stopped it. What it throws comes out here.
  bool Run(HWND parent, Work work);

 private:
  void AddControls() override;
  Box Arrange() const override;
  void OnStart() override;
  void OnTimer(UINT_PTR timer) override;
  void OnOk() override {}
  void OnCancel() override;

  void Begin(std::string_view text, double from, double to) override;
  bool Report(double done) override;

  static unsigned __stdcall Thread(void* self) noexcept;
  void ShowProgress();

  Kind kind_;
  Work work_;
  HANDLE thread_ = nullptr;
  std::exception_ptr failure_;
  double from_ = 0;  // of the phase; for the working thread only
  double to_ = 1;
  std::atomic<double> done_ = 0;  // of the whole
  std::atomic<bool> isStopped_ = false;
  SRWLOCK phaseLock_ = SRWLOCK_INIT;
  std::string phase_;  // under the lock
};

}  // namespace kova::window
