#include "printing/receipt_of_sale.h"

#include <cmath>
#include <string>

#include "charges/contributions.h"
#include "charges/tax_periods.h"
#include "platform/recordstore/walk.h"
#include "printing/master_names.h"
#include "printing/ole_date.h"
#include "printing/receipt_lines.h"
#include "printing/receipt_tax.h"
#include "records/masters.h"
#include "records/patients.h"

namespace kova::printing {
namespace {

using store::GetText;
using store::PutText;

constexpr char kNotTaxed = '1';
constexpr char kTaxed = '2';
constexpr int kTaxOnTop = 1;
constexpr std::string_view kDepartment = "歯科";
constexpr std::string_view kReducedRateNote = "※は軽減税率の対象です。税率(%)";
constexpr std::string_view kGreeting = "お大事になさってください。";

int WholePercent(double rate) { return static_cast<int>(std::lround(rate * 100)); }

/// The tables that one receipt is read from.
class SaleReader {
 public:
  explicit SaleReader(CKovaDBSys* db) : names_(db) {
    // A table that cannot be bound fails at every read.
    for (CBaseDBCall* table : std::initializer_list<CBaseDBCall*>{&sales_, &items_, &charges_, &patients_,
                                                                  &owners_, &categories_, &creditItems_})
      (void)table->SetAssociatedDB(db);
  }

  int Read(const foundation::SettingsSnapshot& settings, std::string_view saleNumber,
           PreparedReceipt& prepared) {
    const int found = sales_.GetSaleData(std::string(saleNumber).c_str());
    if (found != 0) return found;
    ReadCharge();
    ReadRules(settings);
    ReadPatient(prepared.receipt);
    FillSale(prepared.receipt);
    const int read = ReadItems(settings, prepared);
    if (read != 0) return read;
    if (failure_ != 0) return failure_;
    if (names_.Failure() != 0) return names_.Failure();
    if (amounts_.insured == 0 && hasPoints_) amounts_.insured = ShareOfCharge();
    amounts_.insured += applied_;
    SettleTax(amounts_, roundingMode_, prepared.receipt);
    if (hasReduced_) PutText(prepared.receipt.closingText, kReducedRateNote);
    return 0;
  }

 private:
  /// True when a look-up found its record. One that failed is no receipt with a blank in it: Read gives the failure.
  bool IsThere(int result) {
    if (failure_ == 0) failure_ = store::WalkOutcome(result);
    return result == 0;
  }

  void ReadCharge() {
    (void)charges_.SetKey(CChargeDB::Key::BySale);
    charges_.SetKeyBuffer(sales_.record.saleNumber, sizeof sales_.record.saleNumber);
    hasCharge_ = IsThere(charges_.GetEQ());
  }

  void ReadRules(const foundation::SettingsSnapshot& settings) {
    const tagSALE& sale = sales_.record;
    const std::string_view date = GetText(sale.saleDate);
    const int mode = settings.GetInt("GLOBAL", "ConsumptionTax", 0);
    const int used = sale.continuing != 0 ? settings.GetInt("GLOBAL", "ConsumptionTaxCont", mode) : mode;
    taxIsOnTop_ = used == kTaxOnTop;
    roundingMode_ = static_cast<std::int16_t>(settings.GetInt("GLOBAL", "CalculationTax", 1));
    amounts_.normal.percent =
        WholePercent(charges::TaxRateOn(settings, date, "", charges::RateKind::kNormal));
    amounts_.reduced.percent =
        WholePercent(charges::TaxRateOn(settings, date, "", charges::RateKind::kReduced));
    amounts_.reduced.onTopTax = sale.reducedRateTax;
    amounts_.normal.onTopTax = std::int64_t{sale.tax} - sale.reducedRateTax;
    amounts_.insured = sale.insuredAmount;
    amounts_.discount = sale.discount;
  }

  void ReadPatient(_TMPRECEIPT& receipt) {
    const tagSALE& sale = sales_.record;
    PutText(receipt.patientCode, GetText(sale.patientCode));
    if (!IsThere(patients_.GetPatient1Data(std::string(GetText(sale.patientCode)).c_str()))) return;
    const tagPATIENTDB& patient = patients_.record;
    PutText(receipt.payerName, records::ShownName(patient));
    PutText(receipt.insuranceType, names_.Category(records::kInsuranceTypes, GetText(patient.insuranceTypeCode)));
    PutText(receipt.doctorName, names_.Doctor(GetText(patient.doctorCode)));
  }

  void FillSale(_TMPRECEIPT& receipt) {
    const tagSALE& sale = sales_.record;
    const bool numbered = !GetText(sale.receiptNumber).empty();
    PutText(receipt.receiptNumber, numbered ? GetText(sale.receiptNumber) : GetText(sale.saleNumber));
    PutText(receipt.memo, GetText(sale.memo));
    PutText(receipt.paymentMethod, names_.Category(records::kPaymentMethods, GetText(sale.categoryCode)));
    if (hasCharge_ && charges_.record.burdenPercent != 0)
      PutText(receipt.burdenText, std::to_string(charges_.record.burdenPercent) + "%");
    if (IsThere(owners_.GetFIRST())) PutText(receipt.directorName, GetText(owners_.record.name));
    PutText(receipt.departmentName, kDepartment);
    PutText(receipt.greeting, kGreeting);
    receipt.receiptDate = receipt.fromDate = receipt.toDate = DateOf(GetText(sale.saleDate));
    receipt.received = sale.receivedAmount;
    receipt.change = sale.changeAmount;
    if (receipt.received == 0 && hasCharge_) receipt.received = charges_.record.receivedAmount;
    receipt.continuing = sale.continuing;
  }

  int ReadItems(const foundation::SettingsSnapshot& settings, PreparedReceipt& prepared) {
    const std::string_view number = GetText(sales_.record.saleNumber);
    return store::Walk(items_, CSaleItemDB::Key::Primary, {number}, [&](const tagSALEITEM& item) {
      _TMPSALEITEM& line = prepared.AddLine();
      FillLine(item, line);
      Count(line, IsReducedRate(settings, line));
    });
  }

  void FillLine(const tagSALEITEM& item, _TMPSALEITEM& line) {
    const std::string category(GetText(item.categoryCode));
    const bool hasCategory = item.noCategory == 0 && IsThere(categories_.GetCreditCategoryData(category.c_str()));
    const bool hasItem =
        IsThere(creditItems_.GetCreditItemData(category.c_str(), std::string(GetText(item.itemCode)).c_str()));
    const auto text = [](const auto& own, bool hasOther, const auto& other) {
      return GetText(own).empty() && hasOther ? GetText(other) : GetText(own);
    };
    PutText(line.saleDate, GetText(sales_.record.saleDate));
    PutText(line.receiptCategoryCode,
            text(item.receiptCategoryCode, hasCategory, categories_.record.receiptCategoryCode));
    PutText(line.itemName, GetText(item.itemName).empty() ? GetText(item.itemText) : GetText(item.itemName));
    PutText(line.printName, text(item.printName, hasItem, creditItems_.record.printName));
    line.insuranceItem = item.insuranceItem;
    line.insuranceApplied = item.insuranceApplied;
    line.itemReduced = item.reducedRate;  // as it was booked, whatever the masters say today
    line.taxClass = TaxClassOf(item, hasCategory ? categories_.record.taxType[0] : '\0');
    line.quantity = item.quantity;
    line.unitValue = item.unitPrice;
    line.amount = item.amount;
    PutText(line.remark, GetText(item.remark));
  }

  /// As the sale was booked: where no tax was put on top, the amounts include it, if there was a tax that
  /// day.
  std::uint8_t TaxClassOf(const tagSALEITEM& item, char taxType) const {
    const bool isTaxFree = amounts_.normal.percent == 0 && sales_.record.tax == 0;
    if (item.noCategory != 0 || taxType == kNotTaxed || isTaxFree) return TMPTAX_NONE;
    const bool onTop = taxType == kTaxed || taxIsOnTop_;
    return onTop && sales_.record.tax != 0 ? TMPTAX_ON_TOP : TMPTAX_INCLUDED;
  }

  void Count(const _TMPSALEITEM& line, bool isReduced) {
    if (line.insuranceItem != 0) {
      hasPoints_ = true;
      return;
    }
    if (line.insuranceApplied != 0) {
      applied_ += line.amount;
      return;
    }
    hasReduced_ = hasReduced_ || isReduced;
    RateAmounts& rate = isReduced ? amounts_.reduced : amounts_.normal;
    std::int64_t& sum = line.taxClass == TMPTAX_NONE     ? amounts_.notTaxed
                        : line.taxClass == TMPTAX_ON_TOP ? rate.onTop
                                                         : rate.included;
    sum += line.amount;
  }

  /// What the patient pays of the charge; 0 without one.
  std::int64_t ShareOfCharge() const {
    if (!hasCharge_) return 0;
    const tagCHARGE& charge = charges_.record;
    const charges::tagCONTRIBUTION contribution{charge.points, charge.burdenPercent, charge.publicAmount,
                                                static_cast<std::int8_t>(charge.flatAmountFlag),
                                                charge.addedAmount};
    constexpr int kHalfUp = 1;
    const charges::Contribution share = charges::CalcContribution(contribution, kHalfUp);
    return charge.flatAmountFlag == 1 ? share.contribution : share.net;
  }

  CSaleDB sales_{nullptr, 0};
  CSaleItemDB items_{nullptr, 0};
  CChargeDB charges_;
  CPatientDB patients_{nullptr, 0};
  COwnerDB owners_{nullptr, 0};
  CCreditCategoryDB categories_{nullptr, 0};
  CCreditItemDB creditItems_{nullptr, 0};
  MasterNames names_;
  int failure_ = 0;
  bool hasCharge_ = false;
  bool taxIsOnTop_ = false;
  bool hasPoints_ = false;
  bool hasReduced_ = false;
  std::int16_t roundingMode_ = 1;
  std::int64_t applied_ = 0;  // of the lines in yen that belong to the insured part
  ReceiptAmounts amounts_;
};

}  // namespace

_TMPSALEITEM& PreparedReceipt::AddLine() {
  _TMPSALEITEM& line = lines_.emplace_back();
  pointers_.push_back(&line);
  receipt.itemCount = static_cast<std::int32_t>(pointers_.size());
  receipt.items = pointers_.data();
  return line;
}

int ReadReceiptOfSale(CKovaDBSys* db, const foundation::SettingsSnapshot& settings,
                      std::string_view saleNumber, std::string_view today, PreparedReceipt& prepared) {
  const CKovaReads reads(db);
  prepared.receipt.issueDate = DateOf(today);
  return SaleReader(db).Read(settings, saleNumber, prepared);
}

}  // namespace kova::printing
