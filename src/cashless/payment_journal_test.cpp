#include "cashless/payment_journal.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cashless/unresolved_payments.h"
#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"

namespace kova::cashless {
namespace {

using os::FileOutcome;
using os::testing::FakeFiles;
using os::testing::FakeStep;

const std::string kPath = "D:\\host.ini.payments";

PaymentRequest Request(const std::string& name) { return {500, 0, 1, 0, 0, 1, name, "表\t山田\n"}; }

TEST(PaymentJournal, KeepsOthersWhateverStandsBesideThem) {
  FakeFiles files;
  PaymentJournal journal(files, kPath);
  std::tm now{};
  now.tm_mday = 1;
  ASSERT_EQ(journal.Begin(Request("a"), now), FileOutcome::kOk);
  EXPECT_EQ(journal.Begin(Request("a"), now), FileOutcome::kChanged);
  std::string damaged = files.contents[kPath];
  damaged[damaged.find("500")] = '9';
  const std::string noise = std::string("\x81\0\t\t\r", 5) + "\n\n" + damaged;
  files.contents[kPath] = noise + files.contents[kPath] + "cut";
  ASSERT_EQ(journal.Begin(Request("b"), now), FileOutcome::kOk);
  ASSERT_EQ(journal.Close("a", PaymentOutcome::kPaid, 0), FileOutcome::kOk);
  EXPECT_EQ(journal.Close("a", PaymentOutcome::kNotPaid, 0), FileOutcome::kNotThere) << "closed once";

  std::vector<JournalEntry> entries;
  std::size_t unread = 0;
  ASSERT_EQ(journal.Read(entries, &unread), FileOutcome::kOk);
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(unread, 4u);
  EXPECT_EQ(entries[0].outcome, PaymentOutcome::kPaid);
  EXPECT_EQ(entries[1],
            (JournalEntry{"19000101000000", "b", 500, 1, "表 山田 ", PaymentOutcome::kOpen, 0, ""}));
  EXPECT_NE(files.contents[kPath].find(damaged.substr(0, damaged.size() - 2)), std::string::npos);

  const std::string before = files.contents[kPath];
  files.failing = FakeStep::kRead;
  EXPECT_EQ(journal.Begin(Request("c"), now), FileOutcome::kFailed);
  EXPECT_EQ(files.contents[kPath], before) << "what cannot be read is not replaced";
}

TEST(PaymentJournal, ForgetsOldKnownOutcomesOnly) {
  FakeFiles files;
  PaymentJournal journal(files, kPath);
  ASSERT_EQ(journal.Begin(Request("open"), {}), FileOutcome::kOk);
  for (int i = 0; i < 1005; ++i) {
    ASSERT_EQ(journal.Begin(Request(std::to_string(i)), {}), FileOutcome::kOk);
    ASSERT_EQ(journal.Close(std::to_string(i), PaymentOutcome::kPaid, 0), FileOutcome::kOk);
  }
  std::vector<JournalEntry> entries;
  ASSERT_EQ(journal.Read(entries), FileOutcome::kOk);
  EXPECT_EQ(entries.size(), 1000u);
  EXPECT_EQ(entries.front().name + entries[1].name + entries.back().name, "open61004");
}

// A program died while it waited; what the bridge left since, and what the operator is told.
TEST(UnresolvedPayments, AfterACrash) {
  constexpr auto kPaid = PaymentOutcome::kPaid, kNotPaid = PaymentOutcome::kNotPaid,
                 kUnknown = PaymentOutcome::kUnknown;
  const struct {
    std::string left;
    Evidence evidence;
    PaymentOutcome suggested;
  } rows[] = {
      {".dat", Evidence::kWithdrawn, kNotPaid}, {".pro", Evidence::kInProcess, kUnknown},
      {".fin", Evidence::kFinished, kPaid},     {".err", Evidence::kFailed, kNotPaid},
      {"", Evidence::kNothing, kUnknown},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.left);
    FakeFiles files;
    files.folders.insert("D:\\Cashless");
    {
      PaymentJournal died(files, kPath);
      ASSERT_EQ(died.Begin(Request("a"), {}), FileOutcome::kOk);
    }
    if (!row.left.empty()) files.contents["D:\\Cashless\\a" + row.left] = "$RESULT=2201\n";
    PaymentJournal journal(files, kPath);
    UnresolvedPayments unresolved(files, "D:\\Cashless\\", journal);
    std::vector<UnresolvedPayment> payments;
    ASSERT_EQ(unresolved.Look(payments), FileOutcome::kOk);
    ASSERT_EQ(payments.size(), 1u);
    EXPECT_EQ(payments[0].evidence, row.evidence);
    EXPECT_EQ(payments[0].suggested, row.suggested);
    EXPECT_FALSE(files.contents.contains("D:\\Cashless\\a.dat")) << "nobody is charged for it later";
    EXPECT_EQ(unresolved.Settle("a", kUnknown, "x"), FileOutcome::kFailed);
    EXPECT_EQ(unresolved.Settle("a", kPaid, " \n"), FileOutcome::kFailed) << "a reason is needed";
    EXPECT_EQ(unresolved.Settle("a", kPaid, "控えで確認"),
              payments[0].entry.IsUnresolved() ? FileOutcome::kOk : FileOutcome::kNotThere);
    EXPECT_EQ(payments[0].entry.IsUnresolved(), row.left != ".dat");
    EXPECT_EQ(files.contents.size(), 1u) << "the files are gone";
    ASSERT_EQ(unresolved.Look(payments), FileOutcome::kOk);
    EXPECT_TRUE(payments.empty());
  }
}

TEST(UnresolvedPayments, APaymentThatGoesOnElsewhereIsLeftAlone) {
  os::testing::TemporaryFolder folder("cashless");
  os::Files& files = os::RealFiles();
  const std::string path = JournalPath(folder.Path() + "host.ini");
  PaymentJournal working(files, path), looking(files, path);
  std::vector<JournalEntry> entries;
  ASSERT_EQ(working.Begin(Request("a"), {}), FileOutcome::kOk);
  ASSERT_EQ(working.Close("a", PaymentOutcome::kUnknown, 112), FileOutcome::kOk);
  ASSERT_EQ(working.Begin(Request("b"), {}), FileOutcome::kOk);
  ASSERT_EQ(looking.ReadUnresolved(entries), FileOutcome::kOk);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].code, 112);
  ASSERT_EQ(working.Close("b", PaymentOutcome::kUnknown, 0), FileOutcome::kOk);
  ASSERT_EQ(looking.ReadUnresolved(entries), FileOutcome::kOk);
  EXPECT_EQ(entries.size(), 2u);
}

}  // namespace
}  // namespace kova::cashless
