#include "entry/host_wait.h"

namespace kova::entry {

void HostWait(std::string_view, const std::function<void()>& work) { work(); }

}  // namespace kova::entry
