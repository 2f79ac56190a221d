#include <gtest/gtest.h>

#include <string>

#include "cashless/exchange.h"
#include "hosts/companions/cashless_bridge_script.h"
#include "platform/os/testing/fake_files.h"

namespace kova::companions {
namespace {

using cashless::Exchange;
using cashless::PaymentOutcome;
using State = CashlessBridge::State;

TEST(BridgeScript, IsReadWholeOrNotAtAll) {
  const auto script = ParseBridgeScript("/DIE:3  /RESULT:112 /TAKE:0 /ONCE");
  ASSERT_TRUE(script.has_value());
  EXPECT_TRUE(script->diesAt == BridgeStep::kAfterCharging && script->refusal == 112 && script->endsAfterOne);
  EXPECT_TRUE(ParseBridgeScript("").has_value());
  for (const char* line : {"/DIE:6", "/DIE", "/TAKE:-1", "/WORK:1x", "/RESULT:", "/once", "x"})
    EXPECT_FALSE(ParseBridgeScript(line).has_value()) << line;
}

// Whatever the bridge does and wherever it dies: what the suite believes is what the terminal did, or it does
// not know.
TEST(Bridge, NoOutcomeIsEverAWrongOne) {
  constexpr auto kPaid = PaymentOutcome::kPaid, kNotPaid = PaymentOutcome::kNotPaid,
                 kUnknown = PaymentOutcome::kUnknown;
  const struct {
    const char* script;
    PaymentOutcome outcome;
  } rows[] = {
      {"/WORK:7000", kPaid},
      {"/WORK:7000 /BOTH", kPaid},
      {"/TAKE:4000", kNotPaid},
      {"/DIE:1", kNotPaid},
      {"/DIE:2", kUnknown},
      {"/DIE:3", kUnknown},
      {"/DIE:4", kPaid},
      {"/DIE:5", kPaid},
      {"/RESULT:101", kNotPaid},
      {"/RESULT:101 /DIE:2", kUnknown},
      {"/RESULT:101 /DIE:3", kUnknown},
      {"/RESULT:101 /DIE:4", kUnknown},
      {"/RESULT:2001 /DIE:4", kUnknown},
      {"/RESULT:101 /DIE:5", kNotPaid},
      {"/RESULT:112", kUnknown},
      {"/RESULT:112 /CHARGE", kUnknown},
      {"/RESULT:112 /CHARGE /DIE:4", kUnknown},
      {"/RESULT:2092 /CHARGE /DIE:5", kUnknown},
      {"/RESULT:111 /CHARGE /DIE:3", kUnknown},
  };
  for (const auto& row : rows) {
    for (const int cancelAt : {0, 1500, 4500, 30000}) {
      SCOPED_TRACE(std::string(row.script) + " cancel at " + std::to_string(cancelAt));
      os::testing::FakeFiles files;
      files.folders.insert("X");
      CashlessBridge bridge(files, "X", *ParseBridgeScript(row.script));
      Exchange exchange(files, "X", nullptr);
      ASSERT_TRUE(exchange.Start({100, 0, 1, 0, 0, 1, "p", ""}, {}));
      for (int now = 0; now < 40000; now += 500) {
        if (now == cancelAt || now == cancelAt + 9000) (void)exchange.Cancel();
        (void)bridge.Step(now);
        if (now > 0 && now % cashless::kTickInterval == 0) (void)exchange.Tick();
      }
      const PaymentOutcome outcome = exchange.Shown().outcome;
      EXPECT_EQ(exchange.Shown().state, cashless::kIdle);
      if (cancelAt == 30000) {
        EXPECT_EQ(outcome, row.outcome);
      }
      EXPECT_TRUE(outcome == kUnknown || outcome == (bridge.Charged() > 0 ? kPaid : kNotPaid));
      EXPECT_EQ(exchange.Shown().note.empty(), outcome != kUnknown);
    }
  }
}

}  // namespace
}  // namespace kova::companions
