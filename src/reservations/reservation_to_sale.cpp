#include "reservations/reservation_to_sale.h"

#include <initializer_list>

#include "charges/rounding.h"
#include "charges/tax_periods.h"
#include "charges/yen.h"
#include "platform/recordstore/table.h"

namespace kova::reservations {
namespace {

using store::GetText;
using store::PutText;

constexpr int Code(store::Result result) { return static_cast<int>(result); }

// The look-ups of a credit item go by its own codes, cut out of the request's fields. Each gives the record store's result;
// one that is not found is none, and no failure.
int ReadCategory(CCreditCategoryDB& table, const tagFEEREQUEST& request, std::optional<FeeCategory>& category) {
  const int read = table.GetCreditCategoryData(std::string(GetText(request.categoryCode)).c_str());
  if (read == 0) category = FeeCategory{table.record.reducedRate != 0, table.record.taxType[0]};
  return store::FoundOrNone(read);
}

int ReadItem(CCreditItemDB& table, const tagFEEREQUEST& request, std::optional<FeeItem>& item) {
  const std::string categoryCode(GetText(request.categoryCode));
  const std::string itemCode(GetText(request.itemCode));
  const int read = table.GetCreditItemData(categoryCode.c_str(), itemCode.c_str());
  if (read == 0) item = FeeItem{table.record.reducedRate != 0, std::string(GetText(table.record.name))};
  return store::FoundOrNone(read);
}

int TaxModeOf(const tagFEEREQUEST& request, const FeeTaxRules& rules,
              const std::optional<FeeCategory>& category) {
  if (request.noCategory != 0) return 0;
  if (!category) return rules.taxMode;
  if (category->taxType == '1') return 0;
  return category->taxType == '2' ? 1 : rules.taxMode;
}

void FillTaxFields(tagSALE& sale, std::int32_t amount, std::int32_t tax, bool reduced) {
  sale.tax = tax;
  sale.total = charges::AddYen(amount, tax);
  if (tax != 0) sale.taxableAmount = amount;
  if (reduced) {
    sale.reducedRateAmount = charges::SubtractYen(sale.total, tax);
    sale.reducedRateTax = tax;
    sale.reducedRateTotal = sale.total;
  } else {
    sale.normalRateTax = tax;
    sale.normalRateTotal = sale.total;
  }
}

tagSALEITEM MakeItem(const tagFEEREQUEST& request, const std::optional<FeeItem>& item, bool reduced) {
  tagSALEITEM line{};
  PutText(line.saleDate, GetText(request.saleDate));
  PutText(line.categoryCode, GetText(request.categoryCode));
  PutText(line.itemCode, GetText(request.itemCode));
  PutText(line.itemText, GetText(request.itemText));
  if (item) PutText(line.itemName, item->name);
  line.noCategory = request.noCategory;
  line.reducedRate = reduced ? 1 : 0;
  line.unitPrice = request.amount;
  line.amount = request.amount;
  line.quantity = 1;
  return line;
}

}  // namespace

SaleOfFee MakeSaleOfFee(const tagFEEREQUEST& request, const FeeTaxRules& rules,
                        const std::optional<FeeCategory>& category, const std::optional<FeeItem>& item) {
  const bool categoryReduced = request.noCategory == 0 && category && category->reducedRate;
  const bool reduced = (categoryReduced || (item && item->reducedRate)) && rules.reducedRate != 0.0;
  std::int32_t tax = 0;
  if (TaxModeOf(request, rules, category) == 1) {
    tax = charges::RoundOff(rules.roundingMode,
                            request.amount * (reduced ? rules.reducedRate : rules.normalRate));
  }
  SaleOfFee result{{}, MakeItem(request, item, reduced)};
  PutText(result.sale.saleDate, GetText(request.saleDate));
  PutText(result.sale.patientCode, GetText(request.patientCode));
  PutText(result.sale.saleKind, "00");
  FillTaxFields(result.sale, request.amount, tax, reduced);
  return result;
}

FeeTaxRules ReadFeeTaxRules(const foundation::SettingsSnapshot& settings, std::string_view saleDate) {
  return {static_cast<std::int16_t>(settings.GetInt("GLOBAL", "CalculationTax", 1)),
          settings.GetInt("GLOBAL", "ConsumptionTax", 0),
          charges::TaxRateOn(settings, saleDate, "", charges::RateKind::kNormal),
          charges::TaxRateOn(settings, saleDate, "", charges::RateKind::kReduced)};
}

int ReservationToSale(const foundation::SettingsSnapshot& settings, CKovaDBSys* db, tagFEEREQUEST& request) {
  PutText(request.saleNumber, "");
  if (!settings.IsReadable()) return Code(store::Result::kNoSettings);
  const FeeTaxRules rules = ReadFeeTaxRules(settings, GetText(request.saleDate));
  CCreditCategoryDB categories(nullptr, 0);
  CSaleDB sales(nullptr, 0);
  CCreditItemDB items(nullptr, 0);
  CSaleItemDB saleItems(nullptr, 0);
  for (CBaseDBCall* table : std::initializer_list<CBaseDBCall*>{&categories, &sales, &items, &saleItems}) {
    const int bound = table->SetAssociatedDB(db);
    if (bound != 0) return bound;
  }

  std::optional<FeeCategory> category;
  std::optional<FeeItem> item;
  {
    const CKovaReads reads(db);
    int read = request.noCategory == 0 ? ReadCategory(categories, request, category) : 0;
    if (read == 0) read = ReadItem(items, request, item);
    // A category that could not be read may have another tax.
    if (read != 0) return read;
  }
  SaleOfFee made = MakeSaleOfFee(request, rules, category, item);
  sales.record = made.sale;
  CString saleNumber;
  const int result = sales.InsertAdjustFee(saleNumber, &made.item, &saleItems);
  PutText(request.saleNumber, saleNumber.GetString());
  return result;
}

}  // namespace kova::reservations
