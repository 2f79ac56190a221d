#pragma once

// The command on the exchange with a payment terminal's bridge: exchange.

#include <vector>

#include "hosts/kovacall/table_commands.h"

namespace kova::hosts {

const std::vector<TableCommand>& ExchangeCommands();

}  // namespace kova::hosts
