#pragma once

#include <string>

namespace kova::os {

/// The folder of the running program's executable file, "\" at its end; empty when it cannot be told or code
/// page 932 cannot hold it.
std::string ProgramFolder();

/// The name of this machine in the practice's network; empty when it cannot be told or code page 932 cannot
/// hold it.
std::string WorkstationName();

}  // namespace kova::os
