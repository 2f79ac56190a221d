#pragma once

// The commands by which a practice loses no day: backup, restore, salvage, daily-backup.

#include <vector>

#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {

const std::vector<TableCommand>& BackupCommands();

}  // namespace kova::hosts
