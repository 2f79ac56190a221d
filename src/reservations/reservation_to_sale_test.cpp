#include "reservations/reservation_to_sale.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/testing/failing_reads.h"
#include "platform/recordstore/table.h"

namespace kova::reservations {
namespace {

using store::PutText;

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

struct Case {
  const char* name;
  std::int32_t amount;
  std::int16_t rounding;
  int taxMode;
  double normalRate, reducedRate;
  int noCategory;
  std::optional<FeeCategory> category;
  std::optional<FeeItem> item;
  // expected
  std::int32_t tax, total, taxable, normalTax, normalTotal, reducedAmount, reducedTax, reducedTotal;
};

const FeeCategory kPlain{false, '0'};
const FeeItem kItem{false, "歯ブラシ"};
const FeeItem kReducedItem{true, "キシリトールガム"};

const Case kCases[] = {
    {"on top, normal rate", 1080, 1, 1, 0.10, 0.08, 0, kPlain, kItem, 108, 1188, 1080, 108, 1188, 0, 0, 0},
    {"on top, reduced item", 1080, 1, 1, 0.10, 0.08, 0, kPlain, kReducedItem, 86, 1166, 1080, 0, 0, 1080, 86,
     1166},
    {"reduced category", 1080, 1, 1, 0.10, 0.08, 0, FeeCategory{true, '0'}, kItem, 86, 1166, 1080, 0, 0, 1080,
     86, 1166},
    {"reduced item on a day without a reduced rate", 1080, 1, 1, 0.08, 0.0, 0, kPlain, kReducedItem, 86, 1166,
     1080, 86, 1166, 0, 0, 0},
    {"category not taxed", 1080, 1, 1, 0.10, 0.08, 0, FeeCategory{false, '1'}, kItem, 0, 1080, 0, 0, 1080, 0,
     0, 0},
    {"category taxed against the setting", 1080, 1, 0, 0.10, 0.08, 0, FeeCategory{false, '2'}, kItem, 108,
     1188, 1080, 108, 1188, 0, 0, 0},
    {"not taxed but reduced", 1080, 1, 1, 0.10, 0.08, 0, FeeCategory{true, '1'}, kItem, 0, 1080, 0, 0, 0,
     1080, 0, 1080},
    {"no category: never taxed, its flag not asked", 1080, 1, 1, 0.10, 0.08, 1, FeeCategory{true, '2'}, kItem,
     0, 1080, 0, 0, 1080, 0, 0, 0},
    {"no category, reduced item",
     1080,
     1,
     1,
     0.10,
     0.08,
     1,
     {},
     kReducedItem,
     0,
     1080,
     0,
     0,
     0,
     1080,
     0,
     1080},
    {"tax mode 2 is not 1", 1080, 1, 2, 0.10, 0.08, 0, kPlain, kItem, 0, 1080, 0, 0, 1080, 0, 0, 0},
    {"nothing found: the setting decides",
     1080,
     1,
     1,
     0.10,
     0.08,
     0,
     {},
     {},
     108,
     1188,
     1080,
     108,
     1188,
     0,
     0,
     0},
    {"rounded up", 1081, 2, 1, 0.08, 0.0, 0, kPlain, kItem, 87, 1168, 1081, 87, 1168, 0, 0, 0},
    {"rounded down", 1089, 3, 1, 0.10, 0.0, 0, kPlain, kItem, 108, 1197, 1089, 108, 1197, 0, 0, 0},
    {"a refund of half a yen rounds toward plus", -5, 1, 1, 0.10, 0.0, 0, kPlain, kItem, 1, -4, -5, 1, -4, 0,
     0, 0},
    {"no rate", 1080, 1, 1, 0.0, 0.0, 0, kPlain, kItem, 0, 1080, 0, 0, 1080, 0, 0, 0},
    {"the total wraps", kMax, 1, 1, 0.10, 0.0, 0, kPlain, kItem, 214748365,
     std::numeric_limits<std::int32_t>::min() + 214748364, kMax, 214748365,
     std::numeric_limits<std::int32_t>::min() + 214748364, 0, 0, 0},
};

TEST(ReservationToSale, TaxFieldsOfTheSale) {
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.name);
    tagFEEREQUEST request{};
    PutText(request.saleDate, "20261122");
    request.amount = each.amount;
    request.noCategory = static_cast<std::uint8_t>(each.noCategory);
    const FeeTaxRules rules{each.rounding, each.taxMode, each.normalRate, each.reducedRate};
    const tagSALE sale = MakeSaleOfFee(request, rules, each.category, each.item).sale;
    EXPECT_EQ(sale.tax, each.tax);
    EXPECT_EQ(sale.total, each.total);
    EXPECT_EQ(sale.taxableAmount, each.taxable);
    EXPECT_EQ(sale.normalRateTax, each.normalTax);
    EXPECT_EQ(sale.normalRateTotal, each.normalTotal);
    EXPECT_EQ(sale.reducedRateAmount, each.reducedAmount);
    EXPECT_EQ(sale.reducedRateTax, each.reducedTax);
    EXPECT_EQ(sale.reducedRateTotal, each.reducedTotal);
  }
}

TEST(ReservationToSale, TextsAreCopiedAndCutAtCharacters) {
  tagFEEREQUEST request{};
  PutText(request.patientCode, "0000012345");
  PutText(request.saleDate, "20261122");
  PutText(request.categoryCode, "01");
  PutText(request.itemCode, "003");
  request.amount = 500;
  for (std::size_t i = 0; i + 1 < sizeof request.itemText; i += 2) {
    request.itemText[i] = '\x95';
    request.itemText[i + 1] = '\x5C';  // 表 to the last byte, which leaves no terminator
  }
  request.itemText[40] = '\x95';
  const SaleOfFee made = MakeSaleOfFee(request, {1, 0, 0.1, 0.08}, kPlain, kReducedItem);
  EXPECT_STREQ(made.sale.patientCode, "0000012345");
  EXPECT_STREQ(made.sale.saleKind, "00");
  EXPECT_STREQ(made.item.saleDate, "20261122");
  EXPECT_STREQ(made.item.categoryCode, "01");
  EXPECT_STREQ(made.item.itemCode, "003");
  EXPECT_STREQ(made.item.itemName, "キシリトールガム");
  EXPECT_EQ(std::string(made.item.itemText), std::string(request.itemText, 40));
  EXPECT_EQ(made.item.quantity, 1);
  EXPECT_EQ(made.item.unitPrice, 500);
  EXPECT_EQ(made.item.amount, 500);
}

TEST(ReservationToSale, AFailedReadMakesNoSale) {
  const os::testing::TemporaryFolder folder("fee");
  ASSERT_EQ(KovaCreateDatabase(folder.Path().c_str()), 0);
  const foundation::SettingsSnapshot settings(std::string("[GLOBAL]\r\nConsumptionTax=1\r\n"));
  const struct {
    const char* unreadable;
    bool hasSettings;
    store::Result result;
  } rows[] = {{"", false, store::Result::kNoSettings},
              {"creditcategory", true, store::Result::kBusy},
              {"credititem", true, store::Result::kBusy},
              {"", true, store::Result::kDone}};
  for (const auto& row : rows) {
    CKovaDBSys db;
    ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
    store::testing::FailReads(db, row.unreadable);
    tagFEEREQUEST fee{};
    fee.amount = 1080;
    PutText(fee.saleNumber, "old");
    EXPECT_EQ(ReservationToSale(row.hasSettings ? settings : foundation::SettingsSnapshot::Unreadable(), &db, fee),
              static_cast<int>(row.result));
    EXPECT_STREQ(fee.saleNumber, row.result == store::Result::kDone ? "000000000001" : "");
    store::On<CSaleDB> sales(db);
    EXPECT_EQ(sales.GetFIRST() == 0, row.result == store::Result::kDone);
  }
}

}  // namespace
}  // namespace kova::reservations
