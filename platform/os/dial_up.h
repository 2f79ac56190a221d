#pragma once

#include <string>
#include <vector>

namespace kova::os {

/// The names of the machine's dial-up connections (code page 932), in the system's order. None is a normal
/// answer, also where the machine has no dial-up service; a name that the code page cannot hold is left out.
std::vector<std::string> DialUpEntries();

}  // namespace kova::os
