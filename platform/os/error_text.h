#pragma once

#include <string>

#include "platform/os/files.h"

namespace kova::os {

/// What the system says of a failure of that kind, in its own words and language (code page 932).
std::string SystemErrorText(FileOutcome outcome);

}  // namespace kova::os
