#include "cashless/control_payment.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cashless/cashless_payment.h"
#include "cashless/result_codes.h"
#include "platform/os/testing/fake_files.h"

namespace kova::cashless {
namespace {

using Closing = PaymentView::Closing;

/// Answers by a script, and writes down what it is told.
class ScriptedControl final : public TerminalControl {
 public:
  ControlResult opens, begins, ends, aborts;
  int busyFor = 0;  // questions
  std::string log;

  ControlResult Open(bool isTraining) override {
    log += isTraining ? "open-training " : "open ";
    return opens;
  }
  ControlResult Begin(const PaymentRequest& request) override {
    log += "begin" + std::to_string(request.amount) + "/" + std::to_string(request.kind) + " ";
    return begins;
  }
  bool IsBusy(ControlResult& result) override {
    if (busyFor-- > 0) return true;
    result = ends;
    return false;
  }
  ControlResult Abort() override {
    log += "abort ";
    busyFor = abortEnds ? 0 : busyFor;
    return aborts;
  }
  void Close() override { log += "close "; }
  bool abortEnds = true;
};

class ControlPaymentTest : public testing::Test {
 protected:
  PaymentOutcome Recorded() {
    std::vector<JournalEntry> entries;
    EXPECT_EQ(journal_.Read(entries), os::FileOutcome::kOk);
    return entries.empty() ? PaymentOutcome::kOpen : entries.back().outcome;
  }
  /// A press on the second kind's button, WAON.
  const PaymentView& Press() {
    payment_.Begin(1, 0);
    return payment_.Shown();
  }

  os::testing::FakeFiles files_;
  PaymentJournal journal_{files_, "C:\\host.ini.payments"};
  PaymentPlace place_{files_,
                      "C:\\db\\",
                      "FRONT1",
                      journal_,
                      {{{&PaymentKinds()[0], "03", 0}, {&PaymentKinds()[3], "07", 1}}, true},
                      [] { return std::tm(); }};
  ScriptedControl control_;
  ControlPayment terminal_{control_, &journal_};
  CashlessPayment payment_{place_, terminal_, 980, "00000001 山田"};
};

TEST_F(ControlPaymentTest, IsPaidWhenTheControlSaysSo) {
  files_.folders.insert("C:\\db");
  control_.busyFor = 1;
  EXPECT_EQ(Press().state, 4);
  EXPECT_EQ(payment_.Shown().cancelCaption, kStopCaption);
  EXPECT_EQ(payment_.WaitingTime(83000), "待ち時間 1:23");
  EXPECT_EQ(Recorded(), PaymentOutcome::kOpen);
  EXPECT_EQ(payment_.ResultText(), "");
  EXPECT_EQ(payment_.Tick().closing, Closing::kStays);
  EXPECT_EQ(payment_.Tick().closing, Closing::kWithOk);
  EXPECT_EQ(payment_.ResultText(), "07");
  EXPECT_EQ(Recorded(), PaymentOutcome::kPaid);
  EXPECT_EQ(control_.log, "open-training begin980/4 close ");
}

// Each place where a control can fail, with what stays on record and on the screen.
TEST_F(ControlPaymentTest, NeverTakesAnUnknownOutcomeForACertainOne) {
  files_.folders.insert("C:\\db");
  const struct {
    ControlResult opens, begins, ends;
    int code;
    PaymentOutcome outcome;
  } rows[] = {
      {{104, 0}, {}, {}, 104, PaymentOutcome::kNotPaid},
      {{111, 0}, {}, {}, 111, PaymentOutcome::kNotPaid},  // nothing was asked yet
      {{}, {106, 0}, {}, 106, PaymentOutcome::kNotPaid},
      {{}, {111, 0}, {}, 111, PaymentOutcome::kUnknown},
      {{}, {}, {114, 201}, 114, PaymentOutcome::kNotPaid},
      {{}, {}, {114, 92}, 114, PaymentOutcome::kUnknown},
      {{}, {}, {112, 0}, 112, PaymentOutcome::kUnknown},
  };
  for (const auto& row : rows) {
    control_.opens = row.opens;
    control_.begins = row.begins;
    control_.ends = row.ends;
    Press();
    const PaymentView& view = payment_.Tick();
    EXPECT_EQ(view.state, kIdle);
    EXPECT_EQ(view.resultCode, row.code);
    EXPECT_EQ(view.outcome, row.outcome) << row.code;
    EXPECT_EQ(view.note.empty(), row.outcome == PaymentOutcome::kNotPaid);
    EXPECT_EQ(view.closing, Closing::kStays);
    EXPECT_EQ(Recorded(), row.outcome);
  }
}

TEST_F(ControlPaymentTest, CancelAbortsAndCloses) {
  files_.folders.insert("C:\\db");
  const struct {
    int busyFor;
    bool abortEnds;
    ControlResult aborts, ends;
    Closing closing;
    PaymentOutcome outcome;
  } rows[] = {
      {9, true, {}, {114, 304}, Closing::kWithCancel, PaymentOutcome::kNotPaid},
      {9, true, {}, {}, Closing::kWithCancel, PaymentOutcome::kUnknown},  // ended, but how?
      {9, false, {}, {}, Closing::kWithCancel, PaymentOutcome::kUnknown},
      {9, true, {111, 0}, {114, 304}, Closing::kWithCancel, PaymentOutcome::kUnknown},
      {0, true, {}, {}, Closing::kWithOk, PaymentOutcome::kPaid},  // it was through already
      {0, true, {}, {114, 201}, Closing::kWithCancel, PaymentOutcome::kNotPaid},
  };
  for (const auto& row : rows) {
    control_.busyFor = row.busyFor;
    control_.abortEnds = row.abortEnds;
    control_.aborts = row.aborts;
    control_.ends = row.ends;
    Press();
    const PaymentView& view = payment_.Cancel();
    EXPECT_EQ(view.closing, row.closing);
    EXPECT_EQ(view.outcome, row.outcome);
    EXPECT_EQ(Recorded(), row.outcome);
    EXPECT_EQ(view.message == kNormalMessage, row.busyFor > 0);
  }
}

TEST_F(ControlPaymentTest, StartsNothingWithoutANumber) {
  place_.databaseFolder.clear();
  EXPECT_EQ(Press().state, kIdle);
  EXPECT_NE(payment_.Shown().statusText, "");
  EXPECT_EQ(control_.log, "");
  EXPECT_EQ(AmountText(2147483647) + AmountText(-1000) + AmountText(999), "2,147,483,647円-1,000円999円");
}

}  // namespace
}  // namespace kova::cashless
