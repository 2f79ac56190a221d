#pragma once

// The five worked receipts of docs/receipts.md, each with the settings that it is printed under.

#include "printing/testing/receipt_builder.h"

namespace kova::printing::testing {

struct WorkedReceipt {
  const char* name;
  PrintData data;
};

/// Fills in what every receipt of a practice has beside its lines.
inline ReceiptBuilder& ForPatient(ReceiptBuilder& receipt) {
  _TMPRECEIPT& given = receipt.receipt;
  store::PutText(given.patientCode, "0000001905");
  store::PutText(given.paymentMethod, "現金");
  store::PutText(given.insuranceType, "社会保険");
  store::PutText(given.burdenText, "30%");
  store::PutText(given.directorName, "表　修一");
  store::PutText(given.doctorName, "髙﨑　亮");
  store::PutText(given.departmentName, "歯科");
  store::PutText(given.greeting, "お大事になさってください。");
  return receipt;
}

inline PrintData InsuranceOnly() {
  ReceiptBuilder receipt;
  ForPatient(receipt).Points("初診料", "001", 264, 790).Points("パノラマ撮影", "005", 402, 1210);
  receipt.receipt.received = 5000;
  receipt.receipt.change = 3000;
  return DataOf(receipt.Get(), Settings("PrintInsPrice=1\n"));
}

inline PrintData TaxInside() {
  ReceiptBuilder receipt;
  ForPatient(receipt).Yen("ホワイトニング", 1, 33000, TMPTAX_INCLUDED);
  return DataOf(receipt.Get());
}

inline PrintData TaxOnTop() {
  ReceiptBuilder receipt;
  ForPatient(receipt).Yen("マウスピース", 2, 5250, TMPTAX_ON_TOP).Yen("診断書", 1, 3000, TMPTAX_NONE);
  return DataOf(receipt.Get(), Settings("PrintUnitPrice=1\nPrintListYen=1\n"));
}

inline PrintData BothRates() {
  ReceiptBuilder receipt;
  ForPatient(receipt).Yen("歯ブラシ", 3, 330, TMPTAX_INCLUDED);
  receipt.Yen("キシリトールガム", 1, 780, TMPTAX_ON_TOP, true).Yen("フッ素洗口液", 1, 1200, TMPTAX_ON_TOP);
  store::PutText(receipt.receipt.closingText, "※は軽減税率の対象です。税率");
  return DataOf(receipt.Get(), Settings("PrintListSum4=1\n"));
}

inline PrintData WithADiscount() {
  ReceiptBuilder receipt;
  ForPatient(receipt)
      .Points("歯科疾患管理料", "002", 100, 300)
      .Yen("セラミック", 1, 80000, TMPTAX_ON_TOP)
      .Discount(5000);
  return DataOf(receipt.Get(), Settings("PrintInsPriceAddText=（税込）\n"));
}

inline std::vector<WorkedReceipt> WorkedReceipts() {
  return {{"insurance-only", InsuranceOnly()},
          {"tax-inside", TaxInside()},
          {"tax-on-top", TaxOnTop()},
          {"both-rates", BothRates()},
          {"with-a-discount", WithADiscount()}};
}

}  // namespace kova::printing::testing
