#include "entry/host_wait.h"

#include "entry/win32/host_window.h"
#include "window/work_dialog.h"

namespace kova::entry {

void HostWait(std::string_view text, const std::function<void()>& work) {
  window::WorkDialog dialog("お待ちください", window::WorkDialog::Kind::kWaiting);
  dialog.Run(nullptr, [&](foundation::Progress& progress) {
    progress.Begin(text);
    work();
  });
}

bool HostWork(CWnd* parent, std::string_view title, const std::function<void(foundation::Progress&)>& work) {
  window::WorkDialog dialog(title, window::WorkDialog::Kind::kStoppable);
  return dialog.Run(HandleOf(parent), work);
}

}  // namespace kova::entry
