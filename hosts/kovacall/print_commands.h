#pragma once

// The commands on print data files: CreatePrintTmp, CreatePrintFile, DoLoadResData, check-print.

#include <vector>

#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {

const std::vector<TableCommand>& PrintCommands();

}  // namespace kova::hosts
