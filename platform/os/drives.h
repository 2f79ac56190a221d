#pragma once

#include <string_view>

namespace kova::os {

/// True when the folder (code page 932) lies on another machine: a network drive or share. A folder that does
/// not exist is judged by its drive. When the system does not tell, it is taken for local.
bool IsRemoteFolder(std::string_view folder);

}  // namespace kova::os
