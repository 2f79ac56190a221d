#pragma once

// The commands on the visit flow board: board, board-move.

#include <vector>

#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {

const std::vector<TableCommand>& BoardCommands();

}  // namespace kova::hosts
