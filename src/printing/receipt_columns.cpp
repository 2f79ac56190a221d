#include "printing/receipt_columns.h"

#include <algorithm>
#include <cstdio>

#include "platform/recordstore/kovadbcall.h"
#include "platform/toollib/tools.h"

namespace kova::printing {
namespace {

using store::GetText;
using Lines = std::vector<ReceiptLine>;

std::string Yen(std::int64_t amount, const ReceiptSettings& wanted) {
  return (wanted.yenMarks ? "\\" : "") + CTools::NumericFormat(amount);
}

std::string Percent(int rate) { return std::to_string(rate) + "%"; }

/// The points with the patient's share of them.
std::string PointsAndShare(std::int64_t points, std::int64_t share, const ReceiptSettings& wanted) {
  char text[96];
  std::snprintf(text, sizeof text, wanted.yenMarks ? "%s点 / 負担金:\\%-7s" : "%s点 / 負担金:%7s",
                CTools::NumericFormat(points).c_str(), CTools::NumericFormat(share).c_str());
  return text;
}

template <typename Holds>
bool Any(const Lines& lines, Holds holds) {
  return std::any_of(lines.begin(), lines.end(), holds);
}

bool Has(const Lines& lines, TaxClass taxClass) {
  return Any(lines, [&](const ReceiptLine& line) { return line.taxClass == taxClass; });
}

// ---- Columns of the lines.

std::string Name(const ReceiptLine& line, bool saysTaxClass, const ReceiptSettings& wanted) {
  std::string name = line.name + (line.isReduced && wanted.reducedMarks ? "※" : "");
  if (line.quantity >= 2) {
    const bool showsUnit = wanted.unitPrice && line.unitValue != 0;
    name += "(" + (showsUnit ? wanted.unitPriceText + CTools::NumericFormat(line.unitValue) : std::string()) +
            "x" + std::to_string(line.quantity) + ")";
  }
  if (line.isApplied) name += "(保険適用)";
  if (saysTaxClass && line.taxClass == TaxClass::kOnTop) name += " (税別)";
  if (saysTaxClass && line.taxClass == TaxClass::kIncluded) name += " (税込)";
  return name;
}

std::string Amount(const ReceiptLine& line, const ReceiptSettings& wanted) {
  if (!line.isInsurance) return Yen(line.amount, wanted);
  return wanted.insurancePrice ? PointsAndShare(line.points, line.amount, wanted)
                               : CTools::NumericFormat(line.points) + "点";
}

std::string Remark(std::string_view memo, const std::string& remark) {
  if (memo.empty() || memo == remark) return remark;
  return std::string(memo) + (remark.empty() ? "" : " , " + remark);
}

// ---- Columns that sum up.

PrintColumn Column(const std::string& name, std::string amount) {
  return {{name, name, std::move(amount), ""}};
}

std::string Framed(const std::string& text) { return "■■" + text + "■■"; }

/// One of the two rates, as far as the receipt has it.
struct Rate {
  bool isReduced;
  int percent;
  std::int32_t total;  // with tax, less its share of the discount
  std::int32_t tax;    // in it

  bool Holds(const ReceiptLine& line, TaxClass taxClass) const {
    return line.isReduced == isReduced && line.taxClass == taxClass;
  }
};

std::array<Rate, 2> RatesOf(const _TMPRECEIPT& receipt) {
  return {{{false, receipt.taxRate, receipt.normalRateTotal, receipt.normalRateTax},
           {true, receipt.reducedTaxRate, receipt.reducedRateTotal, receipt.reducedRateTax}}};
}

bool HasLines(const Rate& rate, const Lines& lines, TaxClass taxClass) {
  return Any(lines, [&](const ReceiptLine& line) { return rate.Holds(line, taxClass); });
}

void AddInsurance(const _TMPRECEIPT& receipt, const Lines& lines, const ReceiptSettings& wanted,
                  std::vector<PrintColumn>& columns) {
  if (!Any(lines, [](const ReceiptLine& line) { return !line.IsSelfPaid(); })) return;
  std::int64_t points = 0;
  for (const ReceiptLine& line : lines) points += line.points;
  columns.push_back(Column(Framed("保険適用分合計"), points != 0
                                                         ? PointsAndShare(points, receipt.insured, wanted)
                                                         : Yen(receipt.insured, wanted)));
}

template <typename Holds>
void AddSum(const std::string& name, const Lines& lines, const ReceiptSettings& wanted, Holds holds,
            std::vector<PrintColumn>& columns) {
  if (!Any(lines, holds)) return;
  std::int64_t sum = 0;
  for (const ReceiptLine& line : lines) sum += holds(line) ? line.amount : 0;
  columns.push_back(Column(Framed(name), Yen(sum, wanted)));
}

/// The amounts of the self-paid lines as they stand: by tax class, and by rate when there are two.
void AddTaxClasses(const _TMPRECEIPT& receipt, const Lines& lines, const ReceiptSettings& wanted,
                   std::vector<PrintColumn>& columns) {
  const auto isTaxed = [](const ReceiptLine& line) { return line.taxClass != TaxClass::kNone; };
  const bool twoRates =
      Any(lines, [&](const ReceiptLine& line) { return isTaxed(line) && line.isReduced; }) &&
      Any(lines, [&](const ReceiptLine& line) { return isTaxed(line) && !line.isReduced; });
  const auto notTaxed = [&](const ReceiptLine& line) { return line.IsSelfPaid() && !isTaxed(line); };
  AddSum("小計", lines, wanted, notTaxed, columns);
  for (const TaxClass taxClass : {TaxClass::kIncluded, TaxClass::kOnTop}) {
    const std::string in = taxClass == TaxClass::kIncluded ? "(内税)" : "(外税)";
    if (!twoRates) {
      AddSum(
          "小計" + in, lines, wanted, [&](const ReceiptLine& line) { return line.taxClass == taxClass; },
          columns);
      continue;
    }
    for (const Rate& rate : RatesOf(receipt))
      AddSum(
          Percent(rate.percent) + "対象" + in, lines, wanted,
          [&](const ReceiptLine& line) { return rate.Holds(line, taxClass); }, columns);
  }
}

std::string TaxName(const _TMPRECEIPT& receipt, const Lines& lines) {
  std::string rates;
  for (const Rate& rate : RatesOf(receipt)) {
    if (rate.percent == 0 || !HasLines(rate, lines, TaxClass::kOnTop)) continue;
    rates += (rates.empty() ? "" : ",") + Percent(rate.percent);
  }
  return "　消費税" + (rates.empty() ? rates : "(" + rates + ")");
}

/// The tax that was put on top. Beside it, where some amounts include theirs, what that comes to.
void AddTaxOnTop(const _TMPRECEIPT& receipt, const Lines& lines, const ReceiptSettings& wanted,
                 std::vector<PrintColumn>& columns) {
  if (receipt.taxExclusive == 0) return;
  const std::string onTop = Yen(receipt.taxExclusive, wanted);
  columns.push_back(Column(
      TaxName(receipt, lines),
      receipt.taxInclusive == 0 ? onTop : "内税分" + Yen(receipt.taxInclusive, wanted) + " 外税分" + onTop));
}

/// What a qualified invoice says of a rate: the amount and the tax in it.
void AddRate(const Rate& rate, const _TMPRECEIPT& receipt, const Lines& lines, const ReceiptSettings& wanted,
             std::vector<PrintColumn>& columns) {
  if (rate.total == 0 && rate.tax == 0) return;
  const std::string name = (rate.isReduced && wanted.reducedMarks ? "※" : "") + Percent(rate.percent);
  const bool isOnTop = HasLines(rate, lines, TaxClass::kOnTop) && !HasLines(rate, lines, TaxClass::kIncluded);
  const std::string tax = Yen(rate.tax, wanted);
  if (isOnTop && receipt.discount == 0) {
    const std::string bare = Yen(std::int64_t{rate.total} - rate.tax, wanted);
    columns.push_back(Column(Framed(name + "対象"), bare + " (外税 " + tax + ")"));
    return;
  }
  columns.push_back(Column(Framed(name + "対象"), Yen(rate.total, wanted) + " (税込)"));
  columns.push_back(Column("　消費税(" + name + "対象)", "消費税 " + tax));
}

}  // namespace

std::vector<PrintColumn> ItemColumns(const _TMPRECEIPT& receipt, const Lines& lines,
                                     const ReceiptSettings& wanted) {
  // Where all amounts stand to tax alike, the sums below say how; else each line says it.
  const bool saysTaxClass = Has(lines, TaxClass::kOnTop) && Has(lines, TaxClass::kIncluded);
  std::vector<PrintColumn> columns;
  for (const ReceiptLine& line : lines) {
    const std::string name = Name(line, saysTaxClass, wanted);
    const std::string_view memo = columns.empty() ? GetText(receipt.memo) : std::string_view();
    columns.push_back({{name, name, Amount(line, wanted), Remark(memo, line.remark)}});
  }
  return columns;
}

std::vector<PrintColumn> SummaryColumns(const _TMPRECEIPT& receipt, const Lines& lines,
                                        const ReceiptSettings& wanted) {
  std::vector<PrintColumn> columns;
  if (wanted.sumOfInsurance) AddInsurance(receipt, lines, wanted, columns);
  if (wanted.sumsByTaxClass) AddTaxClasses(receipt, lines, wanted, columns);
  if (wanted.taxColumns) {
    AddTaxOnTop(receipt, lines, wanted, columns);
    for (const Rate& rate : RatesOf(receipt)) AddRate(rate, receipt, lines, wanted, columns);
  }
  return columns;
}

}  // namespace kova::printing
