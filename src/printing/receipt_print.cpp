#include "printing/receipt_print.h"

#include <utility>

#include "printing/receipt_columns.h"
#include "printing/receipt_header.h"

namespace kova::printing {

PrintStatus MakeReceiptData(const _TMPRECEIPT& receipt, const foundation::SettingsSnapshot& settings,
                            const os::ApplicationProfile& profile, unsigned int flags, PrintData& data) {
  const ReceiptSettings wanted = ReadReceiptSettings(settings, profile);
  // A longer list is refused before its lines are looked at: a senseless count must not cost a walk.
  if (receipt.itemCount > kMostColumns) return PrintStatus::kTooLong;
  const auto lines = LinesOf(receipt, settings, wanted);
  if (!lines) return PrintStatus::kBadReceipt;
  data = {};
  data.form = &FormOfReceipts();
  data.simple = ReceiptHeader(receipt, *lines, wanted, flags);
  data.insurance = InsuranceBoxes(*lines);
  data.columns = ItemColumns(receipt, *lines, wanted);
  for (PrintColumn& column : SummaryColumns(receipt, *lines, wanted))
    data.columns.push_back(std::move(column));
  return data.columns.size() > kMostColumns ? PrintStatus::kTooLong : PrintStatus::kDone;
}

PrintStatus HandOver(os::Files& files, std::string_view basePath, const PrintData& data) {
  // Names that the form printer knows; do not change.
  const std::string base(basePath);
  const os::FileOutcome outcome = files.ReplaceThrough(base + ".tm_", base + ".tmp", WritePrintData(data));
  return outcome == os::FileOutcome::kOk ? PrintStatus::kDone : PrintStatus::kNotWritten;
}

}  // namespace kova::printing
