#include "printing/receipt_lines.h"

#include <algorithm>
#include <limits>

#include "charges/tax_periods.h"
#include "foundation/number_text.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::printing {
namespace {

using store::GetText;

constexpr int kTaxOnTop = 1;

TaxClass ClassOf(const _TMPSALEITEM& item, bool taxIsOnTop) {
  if (item.insuranceItem != 0 || item.insuranceApplied != 0) return TaxClass::kNone;
  switch (item.taxClass) {
    case TMPTAX_NONE:
      return TaxClass::kNone;
    case TMPTAX_ON_TOP:
      return TaxClass::kOnTop;
    case TMPTAX_INCLUDED:
      return TaxClass::kIncluded;
    default:
      return taxIsOnTop ? TaxClass::kOnTop : TaxClass::kIncluded;
  }
}

/// Beyond 32 bits the nearest limit, so that no sum of them can leave 64.
std::int64_t PointsOf(const _TMPSALEITEM& item) {
  using Limits = std::numeric_limits<std::int32_t>;
  return std::clamp<std::int64_t>(std::int64_t{item.quantity} * item.unitValue, Limits::min(), Limits::max());
}

}  // namespace

bool IsReducedRate(const foundation::SettingsSnapshot& settings, const _TMPSALEITEM& item) {
  if (item.categoryReduced == 0 && item.itemReduced == 0) return false;
  return charges::TaxRateOn(settings, GetText(item.saleDate), "", charges::RateKind::kReduced) != 0.0;
}

std::optional<std::vector<ReceiptLine>> LinesOf(const _TMPRECEIPT& receipt,
                                                const foundation::SettingsSnapshot& settings,
                                                const ReceiptSettings& wanted) {
  if (receipt.itemCount < 0 || (receipt.itemCount > 0 && receipt.items == nullptr)) return std::nullopt;
  const int taxMode = receipt.continuing != 0 ? wanted.continuingTaxMode : wanted.taxMode;
  std::vector<ReceiptLine> lines;
  for (std::int32_t i = 0; i < receipt.itemCount; ++i) {
    if (receipt.items[i] == nullptr) return std::nullopt;
    const _TMPSALEITEM& item = *receipt.items[i];
    ReceiptLine& line = lines.emplace_back();
    line.name = GetText(item.printName).empty() ? GetText(item.itemName) : GetText(item.printName);
    line.category = foundation::ReadInteger(GetText(item.receiptCategoryCode));
    line.mayLead = item.status == 0;
    line.isInsurance = item.insuranceItem != 0;
    line.isApplied = !line.isInsurance && item.insuranceApplied != 0;
    line.isReduced = line.IsSelfPaid() && IsReducedRate(settings, item);
    line.taxClass = ClassOf(item, taxMode == kTaxOnTop);
    line.quantity = item.quantity;
    line.unitValue = item.unitValue;
    if (line.isInsurance) line.points = PointsOf(item);
    line.amount = item.amount;
    line.remark = GetText(item.remark);
  }
  return lines;
}

}  // namespace kova::printing
