#pragma once

// What a receipt's form shows beside its list: the keys of its simple part and its boxes of points.

#include <array>
#include <map>
#include <string>
#include <vector>

#include "printing/print_data.h"
#include "printing/receipt_lines.h"

namespace kova::printing {

/// The simple part, by key number; docs/receipts.md has the field behind each key.
///
/// @param flags  KOVA_PRINT_REISSUED or 0
std::map<int, std::string> ReceiptHeader(const _TMPRECEIPT& receipt, const std::vector<ReceiptLine>& lines,
                                         const ReceiptSettings& wanted, unsigned int flags);

/// The points of the receipt categories 1 to 50, "12点" each; empty for a category without points. A line
/// whose category is none of these is in no box; its points are in the total only.
std::array<std::string, kInsuranceKeys> InsuranceBoxes(const std::vector<ReceiptLine>& lines);

}  // namespace kova::printing
