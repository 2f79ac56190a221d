#pragma once

// The list of a receipt: a column for each line, then the columns that sum them up. docs/receipts.md has the
// rule as a table.

#include <vector>

#include "printing/print_data.h"
#include "printing/receipt_lines.h"

namespace kova::printing {

std::vector<PrintColumn> ItemColumns(const _TMPRECEIPT& receipt, const std::vector<ReceiptLine>& lines,
                                     const ReceiptSettings& wanted);

/// What adds up: the sums of the classes, the insured part and the tax on top are the total charged; the
/// amounts of the rates, with what is not taxed and the insured part, are that less the discount.
std::vector<PrintColumn> SummaryColumns(const _TMPRECEIPT& receipt, const std::vector<ReceiptLine>& lines,
                                        const ReceiptSettings& wanted);

}  // namespace kova::printing
