#pragma once

// Receipts for tests and measurements, put together from a few words a line.

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/settings.h"
#include "platform/os/testing/fake_files.h"
#include "platform/recordstore/kovadbcall.h"
#include "printing/ole_date.h"
#include "printing/receipt_print.h"
#include "printing/receipt_tax.h"

namespace kova::printing::testing {

/// Normal rate 10 %, reduced rate 8 %, and the keys of `mente` and `global` ("KEY=VALUE\n" each).
inline foundation::SettingsSnapshot Settings(const std::string& mente = "", const std::string& global = "") {
  return foundation::SettingsSnapshot(
      "[MENTE]\nTaxCount=1\nTaxFrm01=20191001\nTaxTo01=99991231\nTaxRate01=10\nTaxRate201=8\n" + mente +
      "[GLOBAL]\nClinicName=表町歯科\nClinicAddress=表町1-2\nClinicTel=0900-00-1234\n"
      "ClinicRegNo=T0000000000000\n" +
      global);
}

class ReceiptBuilder {
 public:
  ReceiptBuilder() {
    store::PutText(receipt.receiptNumber, "000000000007");
    store::PutText(receipt.payerName, "山田　花子");
    receipt.receiptDate = receipt.fromDate = receipt.toDate = receipt.issueDate = DateOf(2026, 11, 23);
    amounts.normal.percent = 10;
    amounts.reduced.percent = 8;
  }

  _TMPSALEITEM& Line(std::string_view name, int quantity, int unitValue, int amount) {
    _TMPSALEITEM& item = items_.emplace_back();
    pointers_.push_back(&item);
    store::PutText(item.saleDate, "20261123");
    store::PutText(item.itemName, name);
    item.quantity = quantity;
    item.unitValue = unitValue;
    item.amount = amount;
    return item;
  }
  /// An insurance item: points, and the patient's share of them.
  ReceiptBuilder& Points(std::string_view name, std::string_view category, int points, int share) {
    _TMPSALEITEM& item = Line(name, 1, points, share);
    item.insuranceItem = 1;
    store::PutText(item.receiptCategoryCode, category);
    amounts.insured += share;
    return *this;
  }
  ReceiptBuilder& Yen(std::string_view name, int quantity, int unitPrice, _TMPTAXCLASS taxClass,
                      bool reduced = false) {
    _TMPSALEITEM& item = Line(name, quantity, unitPrice, quantity * unitPrice);
    item.taxClass = taxClass;
    item.itemReduced = reduced ? 1 : 0;
    RateAmounts& rate = reduced ? amounts.reduced : amounts.normal;
    if (taxClass == TMPTAX_NONE) amounts.notTaxed += item.amount;
    if (taxClass == TMPTAX_ON_TOP) rate.onTop += item.amount;
    if (taxClass == TMPTAX_INCLUDED) rate.included += item.amount;
    return *this;
  }
  ReceiptBuilder& Discount(int yen) {
    amounts.discount = yen;
    return *this;
  }

  /// The receipt with its amounts worked out, tax on top rounded down once a rate.
  const _TMPRECEIPT& Get() {
    for (RateAmounts* rate : {&amounts.normal, &amounts.reduced})
      rate->onTopTax = rate->onTop * rate->percent / 100;
    SettleTax(amounts, 3, receipt);
    return GetAsGiven();
  }
  const _TMPRECEIPT& GetAsGiven() {
    receipt.itemCount = static_cast<std::int32_t>(pointers_.size());
    receipt.items = pointers_.data();
    return receipt;
  }

  _TMPRECEIPT receipt{};
  ReceiptAmounts amounts;

 private:
  std::deque<_TMPSALEITEM> items_;
  std::vector<_TMPSALEITEM*> pointers_;
};

inline PrintData DataOf(const _TMPRECEIPT& receipt, const foundation::SettingsSnapshot& settings = Settings(),
                        unsigned int flags = 0) {
  PrintData data;
  const PrintStatus status = MakeReceiptData(receipt, settings, os::testing::FakeProfile(), flags, data);
  if (status != PrintStatus::kDone) data = {};
  return data;
}

/// "name: amount" a column.
inline std::vector<std::string> Columns(const PrintData& data) {
  std::vector<std::string> columns;
  for (const PrintColumn& column : data.columns) columns.push_back(column.rows[0] + ": " + column.rows[2]);
  return columns;
}

}  // namespace kova::printing::testing
