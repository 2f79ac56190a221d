#pragma once

// The command on the last login of a patient's application: AppliLastLoginStr, now or at another time.

#include <vector>

#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {

const std::vector<TableCommand>& NoticeCommands();

}  // namespace kova::hosts
