#include "entry/host_wait.h"

#include "window/work_dialog.h"

namespace kova::entry {

void HostWait(std::string_view text, const std::function<void()>& work) {
  window::WorkDialog dialog("お待ちください", window::WorkDialog::Kind::kWaiting);
  dialog.Run(nullptr, [&](foundation::Progress& progress) {
    progress.Begin(text);
    work();
  });
}

}  // namespace kova::entry
