#include "hosts/sample_practice/sales.h"

#include <cstdio>
#include <string_view>

#include "entry/kova_sub_tools.h"

namespace kova::sample {
namespace {

using store::GetText;
using store::PutText;

const FeeItem& ItemOf(const tagRESERVATION& reservation) {
  for (const FeeItem& each : FeeItems()) {
    if (GetText(reservation.feeCategoryCode) == each.category &&
        GetText(reservation.feeItemCode) == each.code)
      return each;
  }
  return FeeItems().front();
}

int ContributionOf(int points, int burdenPercent) {
  return static_cast<int>(CKovaSubTools::RoundOff(1, points * burdenPercent / 100.0)) * 10;
}

void FillInsuredItem(const FeeItem& insured, int burdenPercent, tagSALEITEM& item) {
  PutText(item.categoryCode, insured.category);
  PutText(item.itemCode, insured.code);
  PutText(item.itemName, insured.name);
  PutText(item.receiptCategoryCode, "003");
  item.insuranceItem = 1;
  item.unitPrice = insured.price;
  item.quantity = 1;
  item.amount = ContributionOf(insured.price, burdenPercent);
}

}  // namespace

// The rates change between days only; asking for each sale would read the settings a million times.
void SaleWriter::ReadRates(std::string_view date) {
  if (date == ratesOf_) return;
  ratesOf_ = date;
  normalRate_ = CKovaSubTools::GetTaxRate(ratesOf_.c_str(), "", 0);
  reducedRate_ = CKovaSubTools::GetTaxRate(ratesOf_.c_str(), "", 1);
}

void SaleWriter::FillFee(const tagRESERVATION& reservation, tagSALEITEM& item) {
  tagSALE& sale = sales_->record;
  const FeeItem& feeItem = ItemOf(reservation);
  const FeeCategory& category = CategoryOf(feeItem);
  const bool none = reservation.feeNoCategory != 0;
  const bool reduced = !none && (feeItem.reducedRate || category.reducedRate) && reducedRate_ != 0.0;
  const bool taxed = !none && std::string_view(category.taxType) != "1";
  const std::int32_t amount = reservation.feeAmount;
  const double rate = reduced ? reducedRate_ : normalRate_;
  sale.tax = taxed ? static_cast<std::int32_t>(CKovaSubTools::RoundOff(1, amount * rate)) : 0;
  sale.total = amount + sale.tax;
  sale.taxableAmount = sale.tax != 0 ? amount : 0;
  if (reduced) {
    sale.reducedRateAmount = amount;
    sale.reducedRateTax = sale.tax;
    sale.reducedRateTotal = sale.total;
  } else {
    sale.normalRateTax = sale.tax;
    sale.normalRateTotal = sale.total;
  }
  PutText(sale.saleKind, "00");
  PutText(item.categoryCode, GetText(reservation.feeCategoryCode));
  PutText(item.itemCode, GetText(reservation.feeItemCode));
  PutText(item.itemText, GetText(reservation.feeText));
  if (!none) PutText(item.itemName, feeItem.name);
  if (!none) PutText(item.receiptCategoryCode, category.receiptCategory);
  item.noCategory = reservation.feeNoCategory;
  item.reducedRate = reduced ? 1 : 0;
  item.unitPrice = amount;
  item.quantity = 1;
  item.amount = amount;
}

SaleWriter::Treatment SaleWriter::PickTreatment(Random& random) {
  Treatment treatment{{&random.Pick(InsuredItems())}, random.Chance(80) ? 30 : 10};
  if (random.Chance(30)) treatment.items.push_back(&random.Pick(InsuredItems()));
  return treatment;
}

void SaleWriter::StartSale(const tagRESERVATION& reservation, Random& random) {
  tagSALE& sale = sales_->record;
  sale = {};
  PutText(sale.saleDate, GetText(reservation.reservationDate));
  PutText(sale.patientCode, GetText(reservation.patientCode));
  PutText(sale.reservationNumber, GetText(reservation.reservationNumber));
  char method[16];
  std::snprintf(method, sizeof method, "%02d", random.Chance(70) ? 1 : random.Between(2, 4));
  PutText(sale.categoryCode, method);
}

void SaleWriter::FillInsured(const Treatment& treatment, tagSALEITEM& item) {
  tagSALE& sale = sales_->record;
  PutText(sale.saleKind, "01");
  for (const FeeItem* each : treatment.items)
    sale.total += ContributionOf(each->price, treatment.burdenPercent);
  sale.insuredAmount = sale.total;
  FillInsuredItem(*treatment.items.front(), treatment.burdenPercent, item);
}

void SaleWriter::AddItem(const FeeItem& insured, int burdenPercent, int line) {
  items_->record = {};
  char number[32];
  std::snprintf(number, sizeof number, "%04d", line);
  PutText(items_->record.saleNumber, GetText(sales_->record.saleNumber));
  PutText(items_->record.lineNumber, number);
  PutText(items_->record.saleDate, GetText(sales_->record.saleDate));
  FillInsuredItem(insured, burdenPercent, items_->record);
  Check(items_->Insert(), "a sale item");
}

void SaleWriter::WriteCharge(const Treatment& treatment, Random& random) {
  const tagSALE& sale = sales_->record;
  tagCHARGE& charge = charges_->record;
  charge = {};
  char number[32];
  std::snprintf(number, sizeof number, "%012lld", ++chargeNumber_);
  PutText(charge.chargeNumber, number);
  PutText(charge.saleNumber, GetText(sale.saleNumber));
  PutText(charge.patientCode, GetText(sale.patientCode));
  PutText(charge.chargeDate, GetText(sale.saleDate));
  for (const FeeItem* each : treatment.items) charge.points += each->price;
  charge.burdenPercent = treatment.burdenPercent;
  charge.amount = sale.total;
  charge.receivedAmount = random.Chance(95) ? sale.total : 0;
  charge.receipted = charge.receivedAmount != 0 ? 1 : 0;
  if (charge.receipted != 0) PutText(charge.receiptNumber, number);
  Check(charges_->Insert(), "a charge");
}

void SaleWriter::Write(tagRESERVATION& reservation, Random& random) {
  const bool insured = reservation.hasFee == 0;
  ReadRates(GetText(reservation.reservationDate));
  StartSale(reservation, random);
  tagSALEITEM item{};
  PutText(item.saleDate, GetText(reservation.reservationDate));
  Treatment treatment{};
  if (insured) {
    treatment = PickTreatment(random);
    FillInsured(treatment, item);
  } else {
    FillFee(reservation, item);
  }
  tagSALE& sale = sales_->record;
  sale.receivedAmount = (sale.total + 999) / 1000 * 1000;
  sale.changeAmount = sale.receivedAmount - sale.total;
  CString number;
  Check(sales_->InsertAdjustFee(number, &item, &items_.table), "a sale");
  PutText(reservation.saleNumber, number.GetString());
  for (std::size_t i = 1; i < treatment.items.size(); ++i)
    AddItem(*treatment.items[i], treatment.burdenPercent, static_cast<int>(i) + 1);
  if (insured && random.Chance(60)) WriteCharge(treatment, random);
}

}  // namespace kova::sample
