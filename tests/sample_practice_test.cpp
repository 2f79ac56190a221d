// The sample practice: the same for the same seed and day, and plausible enough to work with; and the day's
// main job on it.

#include <afxwin.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "entry/kova_sub_tools.h"
#include "platform/os/files.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "platform/toollib/tools.h"
#include "printing/print_data_reader.h"
#include "reservations/fee_request.h"
#include "tests/run_program.h"

namespace {

using kova::store::GetText;
using kova::store::PutText;
using kova::store::On;
using kova::testing::BuiltProgram;
using kova::testing::ProgramRun;
using kova::testing::RunProgram;

constexpr const char* kToday = "20241124";  // a Sunday: open because it is today
constexpr int kPatients = 120;
constexpr int kReservations = 900;

class SamplePractice : public testing::Test {
 protected:
  ProgramRun Make(const std::string& name, const char* seed) const {
    return RunProgram(BuiltProgram("sample_practice"),
                      {In(name), "--seed", seed, "--today", kToday, "--patients", std::to_string(kPatients),
                       "--reservations", std::to_string(kReservations)});
  }
  std::string In(const std::string& name) const { return folder_.Argument() + name; }
  std::string Dump(const std::string& practice, const std::string& table) const {
    return RunProgram(BuiltProgram("kovacall"), {"--app", In(practice + "/app.ini"), "dump", table}).out;
  }

  kova::os::testing::TemporaryFolder folder_{"sample"};
};

template <typename Table, typename Use>
int Walk(CKovaDBSys& db, Table& table, Use use) {
  EXPECT_EQ(table.SetAssociatedDB(&db), 0);
  int count = 0;
  for (int result = table.GetFIRST(); result == 0; result = table.GetNEXT(), ++count) use(table.record);
  return count;
}

bool IsCandidate(const tagRESERVATION& record) {
  return GetText(record.reservationDate) == kToday && record.status < 2 && record.visited != 0 &&
         record.hasFee != 0 && GetText(record.saleNumber).empty();
}

TEST_F(SamplePractice, IsTheSameForTheSameSeed) {
  ASSERT_EQ(Make("a", "7").code, 0);
  ASSERT_EQ(Make("b", "7").code, 0);
  ASSERT_EQ(Make("c", "8").code, 0);
  for (const char* table : {"patient", "reservation", "saleitem", "charge"}) {
    const std::string first = Dump("a", table);
    EXPECT_GT(first.size(), 1000U) << table;
    EXPECT_TRUE(first == Dump("b", table)) << table;
    EXPECT_FALSE(first == Dump("c", table)) << table;
  }
  EXPECT_EQ(Make("a", "7").code, 2) << "a practice is never laid over another";
}

TEST_F(SamplePractice, IsPlausible) {
  const ProgramRun made = Make("p", "1");
  ASSERT_EQ(made.code, 0) << made.err;
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB((folder_.Path() + "p").c_str()), 0);
  CPatientDB patients(nullptr, 0);
  CPatientDB2 halves(nullptr, 0);
  EXPECT_EQ(Walk(db, patients,
                 [&](const tagPATIENTDB& record) {
                   EXPECT_NE(record.name[0], 0);
                   EXPECT_NE(record.reading[0], 0);
                   EXPECT_LE(GetText(record.firstVisitDate), GetText(record.lastVisitDate));
                   EXPECT_LE(GetText(record.birthDate), kToday);
                 }),
            kPatients);
  EXPECT_EQ(Walk(db, halves, [](const tagPATIENTDB2&) {}), kPatients);

  std::set<std::string> itemsOf;
  CSaleItemDB items(nullptr, 0);
  Walk(db, items, [&](const tagSALEITEM& record) { itemsOf.emplace(GetText(record.saleNumber)); });
  CSaleDB sales(nullptr, 0);
  const int saleCount = Walk(db, sales, [&](const tagSALE& record) {
    EXPECT_TRUE(itemsOf.contains(std::string(GetText(record.saleNumber))));
    EXPECT_EQ(record.receivedAmount - record.changeAmount, record.total);
    EXPECT_EQ(record.taxableAmount != 0, record.tax != 0);
  });
  EXPECT_EQ(static_cast<std::size_t>(saleCount), itemsOf.size());

  int withSale = 0;
  int candidates = 0;
  int future = 0;
  CReservationDB reservations(nullptr, 0);
  EXPECT_EQ(Walk(db, reservations,
                 [&](const tagRESERVATION& record) {
                   withSale += GetText(record.saleNumber).empty() ? 0 : 1;
                   candidates += IsCandidate(record) ? 1 : 0;
                   future += GetText(record.reservationDate) > kToday ? 1 : 0;
                   EXPECT_LT(GetText(record.startTime), GetText(record.endTime));
                 }),
            kReservations);
  EXPECT_EQ(withSale, saleCount);
  EXPECT_GE(candidates, 10);
  EXPECT_GT(future, 10);
}

// The generator works out past sales by itself, for speed; they must be what the library makes of the same
// fees.
TEST_F(SamplePractice, PastFeesAreTaxedAsTheLibraryDoes) {
  ASSERT_EQ(Make("p", "1").code, 0);
  CWinApp app;
  const std::string profile = folder_.Path() + "p\\app.ini";
  app.m_pszProfileName = profile.c_str();
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB((folder_.Path() + "p").c_str()), 0);
  std::vector<tagSALE> past;
  CSaleDB sales(nullptr, 0);
  Walk(db, sales, [&](const tagSALE& record) {
    if (GetText(record.saleKind) == "00" && past.size() < 60) past.push_back(record);
  });
  ASSERT_EQ(past.size(), 60U);
  On<CSaleItemDB> items(db);
  for (const tagSALE& sale : past) {
    items.SetKeyBuffer(sale.saleNumber, sizeof sale.saleNumber);
    ASSERT_EQ(items.GetEQ(), 0);
    const tagSALEITEM item = items.record;
    tagFEEREQUEST fee{};
    PutText(fee.saleDate, GetText(sale.saleDate));
    PutText(fee.categoryCode, GetText(item.categoryCode));
    PutText(fee.itemCode, GetText(item.itemCode));
    fee.noCategory = item.noCategory;
    fee.amount = item.amount;
    ASSERT_EQ(CKovaSubTools::ReservationToSale(&db, &fee), 0);
    ASSERT_EQ(sales.GetSaleData(fee.saleNumber), 0);
    const tagSALE& made = sales.record;
    EXPECT_EQ(std::tie(sale.total, sale.tax, sale.taxableAmount, sale.normalRateTax, sale.normalRateTotal,
                       sale.reducedRateAmount, sale.reducedRateTax, sale.reducedRateTotal),
              std::tie(made.total, made.tax, made.taxableAmount, made.normalRateTax, made.normalRateTotal,
                       made.reducedRateAmount, made.reducedRateTax, made.reducedRateTotal))
        << GetText(sale.saleNumber);
  }
}

TEST_F(SamplePractice, SellsTheDaysFeesOnce) {
  ASSERT_EQ(Make("p", "1").code, 0);
  const auto sell = [&] {
    return RunProgram(BuiltProgram("day"), {"--app", In("p/app.ini"), "--date", kToday, "--count", "10"});
  };
  kova::testing::SetVariable("KOVA_OUTBOX", folder_.Native() / "outbox");
  const ProgramRun first = sell();
  EXPECT_EQ(first.code, 0) << first.err;
  EXPECT_EQ(std::count(first.out.begin(), first.out.end(), '\n'), 14) << first.out;
  std::vector<std::string> mails;
  EXPECT_EQ(kova::os::RealFiles().List(folder_.Path() + "outbox", mails), kova::os::FileOutcome::kOk);
  std::erase_if(mails, [](const std::string& name) { return !name.ends_with(".eml"); });
  EXPECT_GE(mails.size(), 3U);
  EXPECT_NE(first.out.find(": " + std::to_string(mails.size()) + " of 10\n"), std::string::npos) << first.out;
  const ProgramRun second = sell();
  EXPECT_EQ(second.code, 0) << second.err;
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB((folder_.Path() + "p").c_str()), 0);
  std::set<std::string> sold;
  int withSale = 0;
  CReservationDB reservations(nullptr, 0);
  Walk(db, reservations, [&](const tagRESERVATION& record) {
    if (GetText(record.saleNumber).empty()) return;
    ++withSale;
    sold.emplace(GetText(record.saleNumber));
  });
  CSaleDB sales(nullptr, 0);
  EXPECT_EQ(Walk(db, sales, [](const tagSALE&) {}), withSale);
  EXPECT_EQ(sold.size(), static_cast<std::size_t>(withSale)) << "no sale serves two reservations";
}

// A receipt says what was booked, whatever kind of sale it is.
TEST_F(SamplePractice, EverySaleHasItsReceipt) {
  ASSERT_EQ(Make("p", "1").code, 0);
  CWinApp app;
  const std::string profile = folder_.Path() + "p\\app.ini";
  app.m_pszProfileName = profile.c_str();
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB((folder_.Path() + "p").c_str()), 0);
  const std::string base = folder_.Path() + "receipt";
  CSaleDB sales(nullptr, 0);
  int withTax = 0;
  Walk(db, sales, [&](const tagSALE& sale) {
    const std::string number(GetText(sale.saleNumber));
    ASSERT_EQ(CKovaSubTools::CreatePrintTmpOfSale(&db, base.c_str(), 0, number.c_str()), 0) << number;
    std::string bytes;
    ASSERT_EQ(kova::os::RealFiles().Read(base + ".tmp", 1 << 20, bytes), kova::os::FileOutcome::kOk);
    kova::printing::PrintData data;
    ASSERT_FALSE(kova::printing::ReadPrintData(bytes, data).has_value()) << number;
    EXPECT_EQ(data.simple[29], "\\" + CTools::NumericFormat(sale.total)) << number;
    EXPECT_EQ(data.simple[28], "\\" + CTools::NumericFormat(sale.tax)) << number;
    EXPECT_EQ(data.simple[14], "T0000000000000");
    withTax += sale.tax != 0 ? 1 : 0;
  });
  EXPECT_GT(withTax, 20);
  EXPECT_NE(CKovaSubTools::CreatePrintTmpOfSale(&db, base.c_str(), 0, "999999999999"), 0);
}

TEST_F(SamplePractice, TheDayEndsWithReceipts) {
  ASSERT_EQ(Make("p", "1").code, 0);
  const ProgramRun run = RunProgram(
      BuiltProgram("day"), {"--app", In("p/app.ini"), "--date", kToday, "--receipts", In("receipts")});
  EXPECT_EQ(run.code, 0) << run.err;
  const ProgramRun printer = RunProgram(BuiltProgram("x").parent_path() / "Option" / "FormPrinter.exe",
                                        {In("receipts"), In("pages")});
  EXPECT_EQ(printer.code, 0) << printer.err;
  std::vector<std::string> pages, left;
  EXPECT_EQ(kova::os::RealFiles().List(folder_.Path() + "pages", pages), kova::os::FileOutcome::kOk);
  EXPECT_EQ(kova::os::RealFiles().List(folder_.Path() + "receipts", left), kova::os::FileOutcome::kOk);
  EXPECT_GE(pages.size(), 2U);
  EXPECT_TRUE(left.empty());
}

}  // namespace
