#include "platform/os/dial_up.h"

namespace kova::os {

std::vector<std::string> DialUpEntries() { return {}; }

}  // namespace kova::os
