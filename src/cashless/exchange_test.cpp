#include "cashless/exchange.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "cashless/payment_names.h"
#include "cashless/result_codes.h"
#include "platform/os/paths.h"
#include "platform/os/testing/fake_files.h"

namespace kova::cashless {
namespace {

using os::FileOutcome;
using os::testing::FakeFiles;
using os::testing::FakeStep;
using Closing = PaymentView::Closing;

const std::string kFolder = "D:\\表\\Cashless\\";

PaymentRequest Request(std::int32_t amount = 2147483647) {
  return {amount, 12, 4, 1, 1, 77, "p", "山田\n表"};
}

class ExchangeTest : public ::testing::Test {
 protected:
  ExchangeTest() { files.folders.insert(std::string(os::DropTrailingDelimiter(kFolder))); }

  std::string There() const {
    std::string there;
    for (const auto& [path, content] : files.contents) {
      if (path.starts_with(kFolder)) there += path.substr(kFolder.size() + 1) + " ";
    }
    return there;
  }
  void Leave(const std::string& extensions, const std::string& content = "") {
    std::erase_if(files.contents, [](const auto& each) { return each.first.starts_with(kFolder); });
    for (std::size_t at = 0; at + 4 <= extensions.size(); at += 4)
      files.contents[kFolder + "p" + extensions.substr(at, 4)] = content;
  }
  PaymentOutcome Recorded() const {
    std::vector<JournalEntry> entries;
    EXPECT_EQ(journal.Read(entries), FileOutcome::kOk);
    return entries.empty() ? PaymentOutcome::kOpen : entries.back().outcome;
  }

  FakeFiles files;
  PaymentJournal journal{files, "D:\\host.ini.payments"};
  std::tm now{};
};

// What each step finds and what comes of it: "state, code, closing, outcome on record, files left".
TEST_F(ExchangeTest, TicksAndCancels) {
  constexpr auto kOpen = PaymentOutcome::kOpen, kPaid = PaymentOutcome::kPaid,
                 kNotPaid = PaymentOutcome::kNotPaid, kUnknown = PaymentOutcome::kUnknown;
  const std::string timeOut = "$RESULT=112\n", refused = "x\n$RESULT=2001\r\n";
  const struct {
    const char* there;  // extensions, one behind the other
    std::string content;
    bool cancels;
    int state;
    int code;  // -1: none is shown
    Closing closing;
    PaymentOutcome recorded;
    const char* left;
  } rows[] = {
      {".dat", "", false, -1, 2, Closing::kStays, kNotPaid, ""},
      {".dat.fin.err.pro", timeOut, false, -1, 2, Closing::kStays, kUnknown, ""},
      {".fin.err.pro", timeOut, false, -1, -1, Closing::kWithOk, kPaid, ""},
      {".err.pro", timeOut, false, -1, 112, Closing::kStays, kUnknown, ""},
      {".err", refused, false, -1, 2001, Closing::kStays, kNotPaid, ""},
      {".err", "", false, -1, 99, Closing::kStays, kUnknown, ""},
      {".err", "$RESULT=", false, -1, 0, Closing::kStays, kUnknown, ""},
      {".err", "$RESULT=2", false, -1, 2, Closing::kStays, kUnknown, ""},  // "2001" half written
      {".pro", "", false, -2, -1, Closing::kStays, kOpen, ".pro "},
      {"", "", false, -2, -1, Closing::kStays, kOpen, ""},
      {".dat", "", true, -1, -1, Closing::kWithCancel, kNotPaid, ""},
      {".dat.fin.err", "", true, -1, -1, Closing::kWithOk, kPaid, ""},
      {".fin.pro", "", true, -1, -1, Closing::kWithOk, kPaid, ""},
      {".err.pro", refused, true, -1, 2001, Closing::kWithCancel, kNotPaid, ""},
      {".pro", "", true, -2, -1, Closing::kStays, kUnknown, ".pro "},
      {"", "", true, -1, -1, Closing::kWithCancel, kUnknown, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.there) + " " + row.content + (row.cancels ? " cancel" : " tick"));
    files.contents.clear();
    Exchange exchange(files, kFolder, &journal);
    ASSERT_TRUE(exchange.Start(Request(), now));
    EXPECT_EQ(exchange.Shown().statusText, "決済処理中...");
    EXPECT_EQ(exchange.Shown().cancelCaption, "決済処理停止");
    EXPECT_EQ(files.contents[kFolder + "p.dat"], "2147483647\n12\n4\n1\n1\n77\np\n山田 表\n");
    Leave(row.there, row.content);
    files.questions = 0;
    const PaymentView& view = row.cancels ? exchange.Cancel() : exchange.Tick();
    EXPECT_LE(files.questions, 5);
    EXPECT_EQ(view.state, row.state);
    EXPECT_EQ(view.resultCode.value_or(-1), row.code);
    EXPECT_EQ(view.closing, row.closing);
    EXPECT_EQ(Recorded(), row.recorded);
    EXPECT_EQ(There(), row.left);
    EXPECT_EQ(view.kindsEnabled, row.state == -1);
    EXPECT_EQ(view.isTicking, row.state == -2 && !row.cancels);
    EXPECT_EQ(view.note.empty(), row.state == -2 || row.recorded != kUnknown);
  }
}

TEST_F(ExchangeTest, ACancelWhileTheBridgeWorksLeavesEverything) {
  for (const std::string later : {".pro", ".fin", ".err"}) {
    files.contents.clear();
    Exchange exchange(files, kFolder, &journal);
    ASSERT_TRUE(exchange.Start(Request(), now));
    Leave(".pro");
    EXPECT_EQ(exchange.Cancel().message, "決済端末にてリセット（決済取消）を行ってください。");
    Leave(later, "$RESULT=2091\n");
    EXPECT_EQ(exchange.Tick().closing, Closing::kStays) << "the ticks do not go on";
    EXPECT_EQ(There(), later + " ");
    EXPECT_EQ(exchange.Cancel().closing, later == ".fin" ? Closing::kWithOk : Closing::kWithCancel);
    EXPECT_EQ(Recorded(), later == ".fin"   ? PaymentOutcome::kPaid
                          : later == ".err" ? PaymentOutcome::kNotPaid
                                            : PaymentOutcome::kUnknown);
    EXPECT_EQ(There(), later == ".pro" ? ".pro " : "");
  }
}

TEST_F(ExchangeTest, StartsNothingThatItCannotPutOnRecordAndInTheFolder) {
  const struct {
    const char *what, *there;
    std::int32_t amount;
    FakeStep failing;
  } rows[] = {
      {"nothing to pay", "", 0, FakeStep::kNone},
      {"money back", "", -2147483647, FakeStep::kNone},
      {"a journal that cannot be locked", "", 1, FakeStep::kLock},
      {"a journal that cannot be written", "", 1, FakeStep::kWrite},
      {"a request that cannot be renamed", "", 1, FakeStep::kMove},
      {"an earlier payment at work", ".pro ", 1, FakeStep::kNone},
      {"an earlier payment's result", ".fin ", 1, FakeStep::kNone},
  };
  for (const auto& row : rows) {
    files.contents.clear();
    Leave(std::string(row.there).substr(0, 4));
    Exchange exchange(files, kFolder, &journal);
    files.failing = row.failing;
    EXPECT_FALSE(exchange.Start(Request(row.amount), now)) << row.what;
    files.failing = FakeStep::kNone;
    EXPECT_EQ(exchange.Shown().state, kIdle);
    EXPECT_NE(exchange.Shown().statusText, "");
    EXPECT_EQ(There(), row.there) << row.what;
    EXPECT_NE(Recorded(), PaymentOutcome::kUnknown);
  }
}

TEST_F(ExchangeTest, FaultsDuringTheWait) {
  Exchange exchange(files, kFolder, &journal);
  ASSERT_TRUE(exchange.Start(Request(), now));
  files.failing = FakeStep::kDelete;
  files.failure = FileOutcome::kNotThere;  // the bridge takes it up between the question and the removal
  EXPECT_EQ(exchange.Tick().state, kWaitingForBridge);

  Leave(".err", "$RESULT=101\n");
  files.failing = FakeStep::kRead;
  files.failure = FileOutcome::kBusy;
  EXPECT_EQ(exchange.Tick().state, kWaitingForBridge) << "held by the bridge";
  files.failing = FakeStep::kNone;
  files.folders.clear();
  Leave("");
  EXPECT_NE(exchange.Tick().statusText, kWaitingText) << "the folder is gone";

  Leave(".fin");
  files.failing = FakeStep::kWrite;
  EXPECT_EQ(exchange.Tick().closing, Closing::kWithOk);
  EXPECT_EQ(There(), ".fin ") << "evidence stays when the journal cannot be closed";

  files.failing = FakeStep::kNone;
  files.contents.clear();
  Exchange second(files, kFolder, &journal);
  ASSERT_TRUE(second.Start(Request(), now));
  files.failing = FakeStep::kDelete;
  files.failure = FileOutcome::kBusy;
  EXPECT_EQ(second.Tick().resultCode, 2);
  EXPECT_NE(second.Shown().note, "") << "the request is still there to be charged";
  EXPECT_EQ(Recorded(), PaymentOutcome::kUnknown);
}

TEST(ResultCode, InAnErrorFile) {
  const struct {
    std::string text;
    int code;
  } rows[] = {
      {"$RESULT=123", 123},
      {"$RESULT=\n5\n", 0},
      {"a\r\n$RESULT= -7x\r\n$RESULT=8\n", -7},
      {" $RESULT=1\nx$RESULT=2\n$result=3\n", 99},
      {"$RESULT=99999999999999999999", 2147483647},
      {"\r$RESULT=1", 99},
      {std::string("\0\n$RESULT=4", 11), 4},
  };
  for (const auto& row : rows) EXPECT_EQ(ResultCodeIn(row.text), row.code) << row.text;

  os::testing::FakeFiles files;
  const ExchangeFiles exchange(files, kFolder, "p");
  int code = 0;
  files.contents[exchange.Path(".err")] = std::string(100 << 20, '\n') + "$RESULT=1\n";
  EXPECT_EQ(exchange.ReadResult(code), FileOutcome::kOk);
  EXPECT_EQ(code, 99) << "beyond what is read";
  files.contents[exchange.Path(".err")] = std::string((64 << 10) - 10, '\n') + "$RESULT=112\n";
  EXPECT_EQ(exchange.ReadResult(code), FileOutcome::kOk);
  EXPECT_EQ(code, 99) << "a number that is cut is none";
}

TEST(ResultCode, SaysWhatItMeansAndWhetherTheMoneyIsSafe) {
  const struct {
    int code, extended;
    std::string message;
    bool isNotPaid;
  } rows[] = {
      {0, 0, "", false},
      {99, 0, "不明なエラー(99)", false},
      {111, 0, "デバイスがビジー中か、正常に動作していません。", false},
      {113, 0, "現在の SO の状態は、この要求を受け付けられません。", true},
      {114, 90, "電文フォーマットエラーです 。指定した業務を端末がサポートしていない可能性があります。",
       true},
      {114, 92, "取引不成立です。 (通信障害)", false},
      {2092, 0, "取引不成立です。 (通信障害)", false},
      {114, 7, "不明なエラー(114-7)", false},
      {-2147483647 - 1, 0, "不明なエラー(-2147483648)", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ResultMessage(row.code, row.extended), row.message);
    EXPECT_EQ(OutcomeOfFailure(row.code, row.extended) == PaymentOutcome::kNotPaid, row.isNotPaid)
        << row.code;
  }
}

TEST(PaymentNames, StayInTheFolder) {
  for (const std::string& kept : {std::string("20240401-表_ｱ"), std::string(64, 'x'), std::string("COM10")})
    EXPECT_EQ(SafeBaseName(kept), kept);
  std::set<std::string> given;
  for (const std::string& name :
       {std::string(), std::string(".."), std::string("..\\..\\x"), std::string("a/b"), std::string("a:b"),
        std::string("nul"), std::string("Com1"), std::string("x."), std::string("x "), std::string("a\0b", 3),
        std::string("\x95"), std::string("\x81\xAD"), std::string("a.dat"), std::string(63, 'x') + "表",
        std::string(300, 'x'), std::string("*?\"<>|")}) {
    const std::string safe = SafeBaseName(name);
    EXPECT_EQ(os::FileNameOf(kFolder + safe), safe);
    EXPECT_LE(safe.size(), 64u);
    EXPECT_EQ(safe.find_first_of(std::string(".:*?\"<>| /\0", 11)), std::string::npos) << safe;
    EXPECT_EQ(SafeBaseName(safe), safe);
    EXPECT_TRUE(given.insert(safe).second) << safe;
  }
}

TEST(PaymentNames, AreNeverTheSame) {
  FakeFiles files;
  const std::tm now{};
  PaymentName first, second;
  files.contents["D:\\Cashless.number"] = "999999";
  ASSERT_EQ(TakePaymentName(files, "D:", "表 1", now, first), FileOutcome::kOk);
  EXPECT_EQ(first.sequence, 1);
  EXPECT_EQ(SafeBaseName(first.name), first.name);
  // The counter was lost, and the clock set back.
  files.contents.clear();
  files.contents["D:\\Cashless\\" + first.name + ".err"] = "";
  ASSERT_EQ(TakePaymentName(files, "D:", "表 1", now, second), FileOutcome::kOk);
  EXPECT_EQ(second.sequence, 2);
  EXPECT_NE(first.name, second.name);
}

}  // namespace
}  // namespace kova::cashless
