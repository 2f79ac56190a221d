#pragma once

#include <string>

#include "hosts/console/practice.h"

namespace kova::hosts {

/// Hands the receipts of a day's sales, and the appointment slips of their patients, to the form printer:
/// files
/// ".tmp" in `folder` (code page 932), which is made when missing. Prints a line for each sale. Throws
/// UsageError when a receipt cannot be handed over.
void HandOverReceipts(Practice& practice, const std::string& date, const std::string& folder);

}  // namespace kova::hosts
