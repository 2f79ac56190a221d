#include "entry/host_wait.h"

namespace kova::entry {

void HostWait(std::string_view, const std::function<void()>& work) { work(); }

bool HostWork(CWnd*, std::string_view, const std::function<void(foundation::Progress&)>& work) {
  foundation::NoProgress progress;
  work(progress);
  return true;
}

}  // namespace kova::entry
