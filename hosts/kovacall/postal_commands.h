#pragma once

// What kovacall does with the postal lists.

#include <vector>

#include "hosts/kovacall/operation.h"
#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {

/// The lookups. They print the answer; where a person would be asked, an empty one and the candidates.
const std::vector<Operation>& PostalOperations();

/// The making of the lists: import-address.
const std::vector<TableCommand>& PostalCommands();

}  // namespace kova::hosts
