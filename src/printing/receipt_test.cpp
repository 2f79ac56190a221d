#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "foundation/text_tools.h"
#include "printing/print_data_reader.h"
#include "printing/receipt_lines.h"
#include "printing/testing/worked_receipts.h"

namespace kova::printing {
namespace {

using testing::Columns;
using testing::DataOf;
using testing::ReceiptBuilder;
using testing::Settings;
using Texts = std::vector<std::string>;

/// The number in a value, whatever stands around it; 0 without digits.
std::int64_t NumberIn(const std::string& text) {
  std::string digits;
  for (const char c : text) {
    if ((c >= '0' && c <= '9') || c == '-') digits += c;
  }
  return digits.empty() ? 0 : std::stoll(digits);
}

// The five worked receipts of docs/receipts.md.
TEST(Receipt, InsuranceOnly) {
  const PrintData data = testing::InsuranceOnly();
  EXPECT_EQ(Columns(data), (Texts{"初診料: 264点 / 負担金:    790", "パノラマ撮影: 402点 / 負担金:  1,210",
                                  "■■保険適用分合計■■: 666点 / 負担金:  2,000"}));
  EXPECT_EQ(data.simple.at(4), "\\2,000");
  EXPECT_EQ(data.simple.at(21), "");
  EXPECT_EQ(data.simple.at(22), "666点");
  EXPECT_EQ(data.simple.at(23), "\\0");
  EXPECT_EQ(data.simple.at(28), "\\0");
  EXPECT_FALSE(data.simple.contains(32));
  EXPECT_EQ(data.insurance[0], "264点");
  EXPECT_EQ(data.insurance[4], "402点");
}

TEST(Receipt, SelfPaidWithTaxInside) {
  const PrintData data = testing::TaxInside();
  EXPECT_EQ(Columns(data), (Texts{"ホワイトニング: 33,000", "■■小計(内税)■■: 33,000",
                                  "■■10%対象■■: 33,000 (税込)", "　消費税(10%対象): 消費税 3,000"}));
  EXPECT_EQ(data.simple.at(29), "\\33,000");
  EXPECT_EQ(data.simple.at(47), "3,000");
  EXPECT_EQ(data.simple.at(54), "消費税(10%)");
}

TEST(Receipt, SelfPaidWithTaxOnTop) {
  const PrintData data = testing::TaxOnTop();
  EXPECT_EQ(Columns(data), (Texts{"マウスピース(@5,250x2): \\10,500", "診断書: \\3,000", "■■小計■■: \\3,000",
                                  "■■小計(外税)■■: \\10,500", "　消費税(10%): \\1,050",
                                  "■■10%対象■■: \\10,500 (外税 \\1,050)"}));
  EXPECT_EQ(data.simple.at(27), "\\13,500");
  EXPECT_EQ(data.simple.at(28), "\\1,050");
  EXPECT_EQ(data.simple.at(29), "\\14,550");
  EXPECT_EQ(data.simple.at(32), "消費税(10%)");
  EXPECT_EQ(data.simple.at(33), "1,050");
}

TEST(Receipt, BothRates) {
  const PrintData data = testing::BothRates();
  EXPECT_EQ(Columns(data),
            (Texts{"歯ブラシ(x3) (税込): 990", "キシリトールガム※ (税別): 780", "フッ素洗口液 (税別): 1,200",
                   "■■10%対象(内税)■■: 990", "■■10%対象(外税)■■: 1,200", "■■8%対象(外税)■■: 780",
                   "　消費税(10%,8%): 内税分90 外税分182", "■■10%対象■■: 2,310 (税込)",
                   "　消費税(10%対象): 消費税 210", "■■※8%対象■■: 780 (外税 62)"}));
  EXPECT_EQ(data.simple.at(4), "\\3,152");
}

TEST(Receipt, InsuranceAndSelfPaidWithADiscount) {
  const PrintData data = testing::WithADiscount();
  EXPECT_EQ(Columns(data),
            (Texts{"歯科疾患管理料: 100点", "セラミック: 80,000",
                   "■■保険適用分合計■■: 100点 / 負担金:    300", "■■小計(外税)■■: 80,000",
                   "　消費税(10%): 8,000", "■■10%対象■■: 83,000 (税込)", "　消費税(10%対象): 消費税 7,545"}));
  EXPECT_EQ(data.simple.at(4), "\\83,300（税込）");
  EXPECT_EQ(data.simple.at(21), "100点 + 88,000円");
  EXPECT_EQ(data.simple.at(23), "\\88,000");
  EXPECT_EQ(data.simple.at(40), "\\5,000（税込）");
}

TEST(Receipt, WhichColumnsEachSettingBrings) {
  ReceiptBuilder receipt;
  receipt.Points("再診料", "002", 56, 170).Yen("歯ブラシ", 1, 1000, TMPTAX_ON_TOP);
  receipt.Yen("ガム", 1, 100, TMPTAX_INCLUDED, true);
  const std::string off = "PrintListSum=0\nPrintListSum2=0\nPrintListSum3=0\nPrintListSum4=0\n";
  const struct {
    std::string on;
    std::size_t columns;
    std::string last;
  } rows[] = {{"", 3, "ガム (税込): 100"},
              {"PrintListSum=1\n", 4, "■■保険適用分合計■■: 56点 / 負担金:    170"},
              {"PrintListSum2=1\n", 5, "■■10%対象(外税)■■: 1,000"},
              {"PrintListSum3=1\n", 7, "　消費税(8%対象): 消費税 7"},
              {"PrintListSum4=1\n", 3, "ガム※ (税込): 100"}};
  for (const auto& row : rows) {
    const std::string first = row.on + off;  // the first of two equal keys counts
    const Texts columns = Columns(DataOf(receipt.Get(), Settings(first)));
    EXPECT_EQ(columns.size(), row.columns) << row.on;
    EXPECT_EQ(columns.back(), row.last);
  }
}

TEST(Receipt, TheTaxModeOfLinesThatSayNone) {
  const struct {
    std::string global;
    int continuing;
    std::string sum;
  } rows[] = {{"", 0, "■■小計(内税)■■: 500"},
              {"ConsumptionTax=1\n", 0, "■■小計(外税)■■: 500"},
              {"ConsumptionTax=1\n", 1, "■■小計(外税)■■: 500"},
              {"ConsumptionTax=1\nConsumptionTaxCont=0\n", 1, "■■小計(内税)■■: 500"},
              {"ConsumptionTax=1\nConsumptionTaxCont=0\n", 0, "■■小計(外税)■■: 500"}};
  for (const auto& row : rows) {
    ReceiptBuilder receipt;
    receipt.Yen("a", 1, 500, TMPTAX_PRACTICE);
    receipt.receipt.continuing = static_cast<std::uint8_t>(row.continuing);
    EXPECT_EQ(Columns(DataOf(receipt.GetAsGiven(), Settings("", row.global))).at(1), row.sum) << row.global;
  }
}

TEST(Receipt, NamesRemarksAndWhereTheShareIsPrinted) {
  ReceiptBuilder receipt;
  receipt.Points("a", "001", 10, 30);
  _TMPSALEITEM& applied = receipt.Line("b", 2, 0, 600);
  applied.insuranceApplied = 1;
  store::PutText(applied.printName, "print");
  store::PutText(receipt.receipt.memo, "memo");
  store::PutText(applied.remark, "own");
  PrintData data =
      DataOf(receipt.GetAsGiven(), Settings("PrintUnitPrice=1\nPrintInsPrice=1\nPrintListYen=1\n"));
  EXPECT_EQ(data.columns[0].rows, (std::array<std::string, 4>{"a", "a", "10点 / 負担金:\\30     ", "memo"}));
  EXPECT_EQ(data.columns[1].rows[1], "print(x2)(保険適用)");
  EXPECT_EQ(data.columns[1].rows[3], "own");
  store::PutText(receipt.receipt.items[0]->remark, "own");
  EXPECT_EQ(DataOf(receipt.receipt).columns[0].rows[3], "memo , own");
  store::PutText(receipt.receipt.items[0]->remark, "memo");
  EXPECT_EQ(DataOf(receipt.receipt).columns[0].rows[3], "memo");

  const struct {
    const char* setting;
    const char* profile;
    const char* amount;
  } rows[] = {{"PrintInsPrice=0\n", "1", "10点"},
              {"PrintInsPrice=2\n", "0", "10点"},
              {"", "1", "10点 / 負担金:     30"},
              {"PrintInsPrice=1\n", "0", "10点 / 負担金:     30"}};
  for (const auto& row : rows) {
    os::testing::FakeProfile profile;
    profile.values["KOVAMENTE/PrintInsPrice"] = row.profile;
    ASSERT_EQ(MakeReceiptData(receipt.receipt, Settings(row.setting), profile, 0, data), PrintStatus::kDone);
    EXPECT_EQ(data.columns[0].rows[2], row.amount) << row.setting;
  }
}

TEST(Receipt, DatesAndTheirRange) {
  constexpr double kSecond = 1.0 / 86400;
  const _TMPRECEIPTDATE day = DateOf(2026, 11, 1), none{day.days, 1};
  const auto after = [&](double days) { return _TMPRECEIPTDATE{day.days + days, 0}; };
  const struct {
    _TMPRECEIPTDATE from, to;
    std::string data2;
  } rows[] = {{day, day, "領収日: 2026.11.01"},
              {day, after(0.4 * kSecond), "領収日: 2026.11.01"},
              {day, after(0.6 * kSecond), "領収日: 2026.11.01～2026.11.01"},
              {day, after(29), "領収日: 2026.11.01～2026.11.30"},
              {after(29), day, "領収日: 2026.11.01～2026.11.30"},
              {day, none, "領収日: 2026.11.01"},
              {day, {1e300, 0}, "領収日: 2026.11.01"}};
  for (const auto& row : rows) {
    ReceiptBuilder receipt;
    receipt.receipt.receiptDate = day;
    receipt.receipt.fromDate = row.from;
    receipt.receipt.toDate = row.to;
    EXPECT_EQ(DataOf(receipt.Get()).simple.at(2), row.data2);
  }
  ReceiptBuilder receipt;
  receipt.receipt.receiptDate = receipt.receipt.toDate = none;
  const auto simple = DataOf(receipt.Get()).simple;
  EXPECT_EQ(simple.at(2), "領収日: ");
  EXPECT_EQ(simple.at(9) + simple.at(10) + simple.at(11), "  -1-1-1");
  EXPECT_EQ(simple.at(24) + simple.at(25) + simple.at(26), "  -1-1-1");
  const struct {
    double days;
    std::string date;
  } days[] = {
      {0, "1899.12.30"},       {1.9999999, "1900.01.01"}, {-1.25, "1899.12.29"}, {36585, "2000.02.29"},
      {-657434, "0100.01.01"}, {2958465, "9999.12.31"},   {2958466, ""},         {-657435, ""}};
  for (const auto& row : days) EXPECT_EQ(DottedDate({row.days, 0}), row.date) << row.days;
  EXPECT_EQ(WeekdayOf("20261123"), 2);
  EXPECT_EQ(WeekdayOf("18991230"), 7);
  EXPECT_EQ(WeekdayOf("20260229"), 0);
}

TEST(Receipt, LinesBeyondTheForm) {
  for (const bool taxed : {false, true}) {
    ReceiptBuilder receipt;
    for (int i = 1; i <= 12; ++i)
      receipt.Yen("n" + std::to_string(i), 1, 100 * i, taxed ? TMPTAX_ON_TOP : TMPTAX_NONE,
                  i == 9 || i == 10);
    const auto simple = DataOf(receipt.Get(), Settings("PrintListSum4=1\n")).simple;
    EXPECT_EQ(simple.at(30), taxed ? "4,200" : "3,300");
    EXPECT_EQ(simple.at(31), taxed ? "n9 ※ 等" : "n10 ※ 等");
    receipt.receipt.items[0]->status = 1;
    EXPECT_EQ(DataOf(receipt.receipt).simple.at(98), "n2 等");
  }
}

TEST(Receipt, PointsByCategory) {
  ReceiptBuilder same, different;
  for (int i = 1; i <= 60; ++i) {
    char code[16];
    std::snprintf(code, sizeof code, "%03d", i);
    same.Points("a", "013", 100, 300);
    different.Points("b", code, i, 0);
  }
  for (const char* code : {"000", "051", "abc", ""}) different.Points("c", code, 1000, 0);
  PrintData data = DataOf(same.Get());
  EXPECT_EQ(data.insurance[12], "6,000点");
  EXPECT_EQ(data.simple.at(21), "6000点");
  data = DataOf(different.Get());
  EXPECT_EQ(data.insurance[0], "1点");
  EXPECT_EQ(data.insurance[49], "50点");
  EXPECT_EQ(data.simple.at(21), "31点");
  EXPECT_EQ(data.simple.at(22), "5,830点");
}

TEST(Receipt, ContractReissueAndTheReducedRateItself) {
  ReceiptBuilder receipt;
  EXPECT_EQ(DataOf(receipt.Get()).simple.count(34), 0u);
  receipt.receipt.contractTotal = 800000;
  receipt.receipt.contractPaid = 300000;
  store::PutText(receipt.receipt.contractDate, "20260405");
  auto simple = DataOf(receipt.receipt, Settings(), KOVA_PRINT_REISSUED).simple;
  EXPECT_EQ(simple.at(36), "500,000");
  EXPECT_EQ(simple.at(49), "2026.4.5");
  EXPECT_EQ(simple.at(59), "再発行");

  _TMPSALEITEM item{};
  store::PutText(item.saleDate, "20261123");
  EXPECT_FALSE(IsReducedRate(Settings(), item));
  item.categoryReduced = 1;
  EXPECT_TRUE(IsReducedRate(Settings(), item));
  store::PutText(item.saleDate, "20190930");
  EXPECT_FALSE(IsReducedRate(Settings(), item));
}

TEST(Receipt, WhatCannotBePrintedIsRefused) {
  ReceiptBuilder receipt;
  PrintData data;
  const auto status = [&] {
    return MakeReceiptData(receipt.receipt, Settings(), os::testing::FakeProfile(), 0, data);
  };
  EXPECT_EQ(status(), PrintStatus::kDone);
  EXPECT_TRUE(data.columns.empty());
  receipt.receipt.itemCount = 1;
  EXPECT_EQ(status(), PrintStatus::kBadReceipt);
  receipt.receipt.itemCount = -1;
  EXPECT_EQ(status(), PrintStatus::kBadReceipt);
  receipt.receipt.itemCount = INT32_MAX;
  EXPECT_EQ(status(), PrintStatus::kTooLong);
  for (int i = 0; i < 998; ++i) receipt.Line("x", 1, 1, 1);
  (void)receipt.GetAsGiven();
  EXPECT_EQ(status(), PrintStatus::kDone);  // and one sum
  receipt.Line("x", 1, 1, 1);
  (void)receipt.GetAsGiven();
  EXPECT_EQ(status(), PrintStatus::kTooLong);
  receipt.receipt.items[3] = nullptr;
  EXPECT_EQ(status(), PrintStatus::kBadReceipt);
}

TEST(Receipt, AmountsAtTheLimitsAreNotWrapped) {
  constexpr int kMost = INT32_MAX, kLeast = INT32_MIN;
  ReceiptBuilder receipt;
  for (int i = 0; i < 500; ++i) receipt.Line("%s[page]=\r\n\x95", kMost, kLeast, i % 2 == 0 ? kMost : kLeast);
  for (int i = 0; i < 4; ++i) receipt.Line("x", kLeast, kLeast, kMost).insuranceItem = 1;
  _TMPRECEIPT& given = receipt.receipt;
  given.total = given.taxExclusive = given.normalRateTotal = kMost;
  given.discount = given.insured = given.normalRateTax = kLeast;
  const PrintData data = DataOf(receipt.GetAsGiven());
  EXPECT_EQ(data.simple.at(4), "\\4,294,967,295");
  PrintData read;
  EXPECT_FALSE(ReadPrintData(WritePrintData(data), read).has_value());
  EXPECT_EQ(read.columns.size(), data.columns.size());
}

/// Random receipts whose lines are of every kind.
ReceiptBuilder RandomReceipt(std::mt19937& random) {
  const auto pick = [&](int least, int most) { return std::uniform_int_distribution(least, most)(random); };
  ReceiptBuilder receipt;
  for (int i = pick(0, 14); i > 0; --i) {
    if (pick(0, 2) == 0) {
      receipt.Points("p", std::to_string(pick(1, 50)), pick(1, 3000), pick(0, 900) * 10);
    } else {
      receipt.Yen("y", pick(1, 3), pick(0, 40000), static_cast<_TMPTAXCLASS>(pick(1, 3)), pick(0, 2) == 0);
    }
  }
  if (pick(0, 1) == 1) receipt.Discount(pick(1, 20000));
  return receipt;
}

// Only what the file says is used: it must add up for who has nothing else.
TEST(Receipt, RandomReceiptsAddUp) {
  std::mt19937 random(932);
  for (int round = 0; round < 2000; ++round) {
    ReceiptBuilder built = RandomReceipt(random);
    (void)built.Get();
    const bool yenMarks = round % 2 == 1;
    PrintData data;
    const std::string bytes = WritePrintData(DataOf(
        built.receipt, Settings(yenMarks ? "PrintListYen=1\nPrintListSum4=1\n" : "PrintInsPrice=1\n")));
    ASSERT_FALSE(ReadPrintData(bytes, data).has_value());
    const auto key = [&](int number) { return NumberIn(data.simple[number]); };
    const auto sumOf = [&](std::string_view beginning, std::string_view has, std::string_view split) {
      std::int64_t sum = 0;
      for (std::size_t i = static_cast<std::size_t>(built.receipt.itemCount); i < data.columns.size(); ++i) {
        const std::string& name = data.columns[i].rows[0];
        const std::string& amount = data.columns[i].rows[2];
        if (!name.starts_with(beginning) || name.find(has) == std::string::npos) continue;
        const std::size_t at = amount.find(split);
        sum += NumberIn(split.empty() || at == std::string::npos ? amount : amount.substr(at + split.size()));
      }
      return sum;
    };
    const std::int64_t insured = sumOf("■■保険", "", "負担金:");
    const std::int64_t notTaxed = sumOf("■■小計■■", "", "");
    const std::int64_t classes = notTaxed + sumOf("■■", "(内税)", "") + sumOf("■■", "(外税)", "");
    const std::int64_t onTop = sumOf("　消費税", "", "外税分") - sumOf("　消費税", "%対象)", "消費税 ");
    std::int64_t rates = 0, rateTaxes = sumOf("　消費税", "%対象)", "消費税 ");
    for (const PrintColumn& column : data.columns) {
      if (!column.rows[0].ends_with("%対象■■")) continue;
      const std::string& amount = column.rows[2];
      const std::size_t tax = amount.find(" (外税 ");
      rates += NumberIn(amount.substr(0, tax));
      if (tax == std::string::npos) continue;
      rates += NumberIn(amount.substr(tax));
      rateTaxes += NumberIn(amount.substr(tax));
    }
    const std::int64_t discount = key(40);
    EXPECT_EQ(insured + classes + onTop - discount, key(4));
    EXPECT_EQ(classes + onTop, key(23));
    EXPECT_EQ(onTop, key(28));
    EXPECT_EQ(key(27) + key(28) - discount, key(29));
    EXPECT_EQ(key(29), key(4));
    EXPECT_EQ(key(33), key(28));
    EXPECT_EQ(key(28) != 0, data.simple.contains(32));
    EXPECT_EQ(rates, key(53) + key(56));
    EXPECT_EQ(rateTaxes, key(58));
    const std::int64_t beyondSelfPaid = std::max<std::int64_t>(0, discount - key(23));
    EXPECT_EQ(insured + rates + key(50) - beyondSelfPaid, key(4));
    std::int64_t boxes = 0;
    for (const std::string& box : data.insurance) boxes += NumberIn(box);
    EXPECT_EQ(boxes, key(22));
    std::int64_t rest = 0;
    for (std::size_t i = key(28) != 0 ? 8 : 9; i < static_cast<std::size_t>(built.receipt.itemCount); ++i)
      rest += built.receipt.items[i]->amount;
    EXPECT_EQ(rest, key(30));
    if (HasFailure()) FAIL() << "round " << round << "\n" << bytes;
  }
}

TEST(Receipt, TaxIsRoundedOnceForEachRate) {
  // Three lines of 15 yen with tax on top: 4.5 yen in all, never 1.5 three times.
  ReceiptAmounts amounts;
  amounts.normal = {10, 45, 4, 0};
  _TMPRECEIPT receipt{};
  for (const std::int16_t mode : {1, 2, 3, 0}) {
    SettleTax(amounts, mode, receipt);
    EXPECT_EQ(receipt.normalRateTax, 4);
    EXPECT_EQ(receipt.taxInclusive, 0);
  }
  // Both kinds at one rate: 1,000 + 100 and 105 with 9.5 of tax in it make 1,205 with 109.5 of tax.
  amounts.normal = {10, 1000, 100, 105};
  const std::int32_t taxes[] = {109, 110, 110, 109};
  for (const std::int16_t mode : {0, 1, 2, 3}) {
    SettleTax(amounts, mode, receipt);
    EXPECT_EQ(receipt.normalRateTax, taxes[mode]);
    EXPECT_EQ(receipt.taxInclusive, taxes[mode] - 100);
  }
  // More discount than the self-paid part has: the insured part bears the rest.
  amounts = {{10, 0, 0, 110}, {8, 0, 0, 108}, 82, 1000, 500};
  SettleTax(amounts, 1, receipt);
  EXPECT_EQ(receipt.normalRateTotal + receipt.reducedRateTotal + receipt.notTaxedTotal, 0);
  EXPECT_EQ(receipt.normalRateTax + receipt.reducedRateTax, 0);
}

}  // namespace
}  // namespace kova::printing
