#include "printing/receipt_header.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "foundation/number_text.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/toollib/tools.h"
#include "printing/ole_date.h"

namespace kova::printing {
namespace {

using store::GetText;
using Lines = std::vector<ReceiptLine>;

constexpr double kHalfASecond = 5.787037037037037e-06;  // of a day
constexpr std::size_t kLinesOfForm = 9;
constexpr std::int32_t kValid = 0;

std::string Yen(std::int64_t amount) { return "\\" + CTools::NumericFormat(amount); }
std::string OrEmpty(std::int64_t amount) {
  return amount == 0 ? std::string() : CTools::NumericFormat(amount);
}

std::string Padded(int width, int number) {
  char text[24];
  std::snprintf(text, sizeof text, "%*d", width, number);
  return text;
}

class Header {
 public:
  Header(const _TMPRECEIPT& receipt, const Lines& lines, const ReceiptSettings& wanted)
      : receipt_(receipt),
        lines_(lines),
        wanted_(wanted),
        charged_(std::int64_t{receipt.total} - receipt.discount) {}

  std::map<int, std::string> Fill(unsigned int flags) {
    FillPayer();
    FillTexts();
    FillPoints();
    FillAmounts();
    FillRest();
    FillContract();
    FillTaxClasses();
    FillClosing(flags);
    return std::move(keys_);
  }

 private:
  template <std::size_t Width>
  void Put(int key, const char (&text)[Width]) {
    keys_[key] = GetText(text);
  }
  void Put(int key, std::string text) { keys_[key] = std::move(text); }

  void PutDate(int firstKey, const _TMPRECEIPTDATE& date) {
    const DateParts parts = PartsOf(date);
    Put(firstKey, Padded(4, parts.year));
    Put(firstKey + 1, Padded(2, parts.month));
    Put(firstKey + 2, Padded(2, parts.day));
  }

  /// The days that the receipt is for, the earlier one first.
  std::pair<_TMPRECEIPTDATE, _TMPRECEIPTDATE> Range() const {
    const bool reversed = receipt_.fromDate.status == kValid && receipt_.toDate.status == kValid &&
                          receipt_.toDate.days < receipt_.fromDate.days;
    return reversed ? std::pair(receipt_.toDate, receipt_.fromDate)
                    : std::pair(receipt_.fromDate, receipt_.toDate);
  }

  std::string ReceiptDates() const {
    const auto [from, to] = Range();
    // A tolerance, not an exact comparison: hosts compute these dates.
    const bool isRange =
        PartsOf(from).year >= 0 && PartsOf(to).year >= 0 && to.days - from.days > kHalfASecond;
    return "領収日: " +
           (isRange ? DottedDate(from) + "～" + DottedDate(to) : DottedDate(receipt_.receiptDate));
  }

  void FillPayer() {
    const std::string payer(GetText(receipt_.payerName));
    Put(1, "No.: " + std::string(GetText(receipt_.receiptNumber)));
    Put(2, ReceiptDates());
    Put(3, payer + " 様");
    Put(4, Yen(charged_) + wanted_.insurancePriceText);
    Put(5, wanted_.clinicName);
    Put(6, wanted_.clinicAddress);
    Put(7, wanted_.clinicTel);
    Put(8, payer);
    PutDate(9, receipt_.receiptDate);
  }

  void FillTexts() {
    Put(12, receipt_.receiptNumber);
    Put(13, receipt_.memo);
    Put(14, wanted_.registrationNumber);
    Put(15, receipt_.patientCode);
    Put(16, receipt_.staffName);
    Put(17, receipt_.paymentMethod);
    Put(18, receipt_.insuranceType);
    Put(19, "発行日: " + DottedDate(receipt_.issueDate));
    Put(20, std::to_string(receipt_.itemCount));
    PutDate(24, Range().second);
    Put(39, receipt_.burdenText);
    Put(43, receipt_.directorName);
    Put(44, receipt_.doctorName);
    Put(45, receipt_.departmentName);
  }

  void FillPoints() {
    std::int64_t all = 0, basic = 0;
    for (const ReceiptLine& line : lines_) {
      all += line.points;
      if (line.category == 2 || line.category == 13 || line.category == 16) basic += line.points;
    }
    const std::int64_t selfPaid = std::int64_t{receipt_.total} - receipt_.insured;
    std::string text = basic == 0 ? std::string() : std::to_string(basic) + "点";
    if (selfPaid != 0) text += (text.empty() ? "" : " + ") + CTools::NumericFormat(selfPaid) + "円";
    Put(21, text);
    Put(22, all == 0 ? std::string() : CTools::NumericFormat(all) + "点");
    Put(23, Yen(selfPaid));
  }

  void FillAmounts() {
    Put(27, Yen(std::int64_t{receipt_.total} - receipt_.taxExclusive));
    Put(28, Yen(receipt_.taxExclusive));
    Put(29, Yen(charged_));
    const bool onlyReduced = receipt_.normalRateTax == 0 && receipt_.reducedRateTax != 0;
    if (receipt_.taxExclusive != 0)
      Put(32, "消費税(" + std::to_string(onlyReduced ? receipt_.reducedTaxRate : receipt_.taxRate) + "%)");
    Put(33, CTools::NumericFormat(receipt_.taxExclusive));
    const auto marked = [&](std::int32_t amount) {
      return amount == 0 ? std::string() : Yen(amount) + wanted_.insurancePriceText;
    };
    Put(37, marked(receipt_.insured));
    Put(38, marked(receipt_.selfPaid));
    Put(40, marked(receipt_.discount));
    Put(41, marked(receipt_.received));
    Put(42, marked(receipt_.change));
    Put(46, CTools::NumericFormat(receipt_.taxExclusive));
    Put(47, CTools::NumericFormat(receipt_.taxInclusive));
    Put(48, CTools::NumericFormat(std::int64_t{receipt_.taxExclusive} + receipt_.taxInclusive));
  }

  /// The lines that a form of nine lines has no room for; the tax on top takes one of the nine.
  void FillRest() {
    const std::size_t room = receipt_.taxExclusive != 0 ? kLinesOfForm - 1 : kLinesOfForm;
    if (lines_.size() <= room) return;
    std::int64_t sum = 0;
    for (std::size_t i = room; i < lines_.size(); ++i) sum += lines_[i].amount;
    Put(30, CTools::NumericFormat(sum));
    const ReceiptLine& first = lines_[room];
    Put(31, first.name + (first.isReduced && wanted_.reducedMarks ? " ※" : "") + " 等");
  }

  void FillContract() {
    if (receipt_.contractTotal == 0) return;
    Put(34, CTools::NumericFormat(receipt_.contractTotal));
    Put(35, CTools::NumericFormat(receipt_.contractPaid));
    Put(36, CTools::NumericFormat(std::int64_t{receipt_.contractTotal} - receipt_.contractPaid));
    const std::string_view date = GetText(receipt_.contractDate);
    if (date.empty()) return;
    const auto part = [&](std::size_t at, std::size_t length) {
      return foundation::ReadInteger(date.substr(std::min(at, date.size()), length));
    };
    Put(49, Padded(4, part(0, 4)) + "." + std::to_string(part(4, 2)) + "." + std::to_string(part(6, 2)));
  }

  void FillTaxClasses() {
    std::int64_t onTop = 0, included = 0;
    for (const ReceiptLine& line : lines_) {
      if (line.taxClass == TaxClass::kOnTop) onTop += line.amount;
      if (line.taxClass == TaxClass::kIncluded) included += line.amount;
    }
    Put(50, OrEmpty(receipt_.notTaxedTotal));
    Put(51, OrEmpty(onTop));
    Put(52, OrEmpty(included));
    Put(53, OrEmpty(receipt_.normalRateTotal));
    if (receipt_.normalRateTax != 0) Put(54, "消費税(" + std::to_string(receipt_.taxRate) + "%)");
    Put(55, OrEmpty(receipt_.normalRateTax));
    Put(56, OrEmpty(receipt_.reducedRateTotal));
    Put(57, OrEmpty(receipt_.reducedRateTax));
    Put(58, OrEmpty(std::int64_t{receipt_.normalRateTax} + receipt_.reducedRateTax));
  }

  void FillClosing(unsigned int flags) {
    Put(59, (flags & KOVA_PRINT_REISSUED) != 0 ? "再発行" : "");
    Put(60, std::string(GetText(receipt_.closingText)) + "<BR>" + std::to_string(receipt_.reducedTaxRate));
    Put(61, receipt_.greeting);
    Put(99, Yen(charged_));
    if (lines_.empty()) return;
    const auto lead =
        std::find_if(lines_.begin(), lines_.end(), [](const ReceiptLine& line) { return line.mayLead; });
    Put(98, (lead == lines_.end() ? lines_.front() : *lead).name + " 等");
  }

  const _TMPRECEIPT& receipt_;
  const Lines& lines_;
  const ReceiptSettings& wanted_;
  const std::int64_t charged_;
  std::map<int, std::string> keys_;
};

}  // namespace

std::map<int, std::string> ReceiptHeader(const _TMPRECEIPT& receipt, const Lines& lines,
                                         const ReceiptSettings& wanted, unsigned int flags) {
  return Header(receipt, lines, wanted).Fill(flags);
}

std::array<std::string, kInsuranceKeys> InsuranceBoxes(const Lines& lines) {
  std::array<std::int64_t, kInsuranceKeys> points{};
  for (const ReceiptLine& line : lines) {
    if (line.category >= 1 && line.category <= kInsuranceKeys)
      points[static_cast<std::size_t>(line.category) - 1] += line.points;
  }
  std::array<std::string, kInsuranceKeys> boxes;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    if (points[i] != 0) boxes[i] = CTools::NumericFormat(points[i]) + "点";
  }
  return boxes;
}

}  // namespace kova::printing
