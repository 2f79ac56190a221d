#pragma once

// The commands on dates by eras and on the columns of lists: era, columns.

#include <vector>

#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {

const std::vector<TableCommand>& ControlsCommands();

}  // namespace kova::hosts
