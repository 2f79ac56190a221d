#include "mail/mail_settings.h"

#include <gtest/gtest.h>

#include <map>

#include "mail/server_check.h"
#include "platform/os/testing/fake_files.h"

namespace kova::mail {
namespace {

using os::FileOutcome;
using os::TcpOutcome;

class MailSettingsTest : public testing::Test {
 protected:
  MailSettingsTest() {
    profile.values["GLOBAL/DATABASE"] = "C:\\db\\";
    files.folders = {"C:\\db"};
  }
  os::testing::FakeFiles files;
  os::testing::FakeProfile profile;
  foundation::SettingsStore store{profile, files};
};

TEST_F(MailSettingsTest, KeepsEveryFieldUnderItsKey) {
  EXPECT_EQ(ReadMailSettings(store.Open()), MailSettings{});
  const MailSettings settings{"smtp.example.jp:587",
                              "表@example.jp",
                              "表歯科",
                              "user",
                              "  \"p;w]' ",
                              1,
                              "ダイヤルソ",
                              1,
                              "auth",
                              "'x'"};
  EXPECT_EQ(WriteMailSettings(store, settings), FileOutcome::kOk);
  EXPECT_EQ(ReadMailSettings(store.Open()), settings);
  EXPECT_EQ(
      files.contents["C:\\db\\GLOBALSETTING.ini"],
      "[EMail]\r\nStmp=smtp.example.jp:587\r\nEmailAddress=表@example.jp\r\nSender=表歯科\r\nUserID=user\r\n"
      "Password=\"  \"p;w]' \"\r\nConnection=1\r\nConnectionName=ダイヤルソ\r\nSmtpAttach=1\r\n"
      "SmtpUserID=auth\r\nSmtpPassword=\"'x'\"\r\n");
  EXPECT_EQ(WriteMailSettings(store, {}), FileOutcome::kOk);
  EXPECT_EQ(ReadMailSettings(store.Open()), MailSettings{});
}

TEST_F(MailSettingsTest, FailureIsToldAndChangesNothing) {
  files.failing = os::testing::FakeStep::kWrite;
  files.failure = FileOutcome::kFull;
  MailSettings changed;
  changed.server = "new";
  EXPECT_EQ(WriteMailSettings(store, changed), FileOutcome::kFull);
  EXPECT_TRUE(files.contents.empty());
}

TEST(ServerCheck, FindsHostAndPorts) {
  const struct {
    const char* server;
    bool authenticates;
    std::optional<ServerPlace> place;
  } cases[] = {
      {"smtp.example.jp", false, ServerPlace{"smtp.example.jp", {25, 587}}},
      {" smtp.example.jp\t", true, ServerPlace{"smtp.example.jp", {587, 25}}},
      {"smtp.example.jp:2525", true, ServerPlace{"smtp.example.jp", {2525}}},
      {"[2001:db8::1]:25", false, ServerPlace{"2001:db8::1", {25}}},
      {"[::1]", false, ServerPlace{"::1", {25, 587}}},
      {"", false, {}},
      {":25", false, {}},
      {"a:", false, {}},
      {"a:0", false, {}},
      {"a:65536", false, {}},
      {"a:123456789012", false, {}},
      {"a:25x", false, {}},
      {"a b", false, {}},
      {"[::1]x:25", false, {}},
  };
  for (const auto& each : cases)
    EXPECT_EQ(PlaceOfServer(each.server, each.authenticates), each.place) << each.server;
}

/// A port gives its outcome, and then the pieces of its greeting; where they end the connection is closed.
class FakeTcp final : public os::Tcp {
 public:
  struct Port {
    TcpOutcome outcome;
    std::vector<std::string> pieces;
    TcpOutcome end = TcpOutcome::kClosed;
  };
  std::map<int, Port> ports;

  TcpOutcome Connect(std::string_view, int port, const os::TcpPatience& patience,
                     std::unique_ptr<os::TcpConnection>& connection) override {
    if (!patience.goesOn()) return TcpOutcome::kStopped;
    const Port& found = ports.at(port);
    if (found.outcome == TcpOutcome::kOk) connection = std::make_unique<Open>(found);
    return found.outcome;
  }

 private:
  struct Open final : os::TcpConnection {
    explicit Open(const Port& from) : port(from) {}
    TcpOutcome Receive(std::string& received, const os::TcpPatience&) override {
      if (next == port.pieces.size()) return port.end;
      received += port.pieces[next++];
      return TcpOutcome::kOk;
    }
    const Port& port;
    std::size_t next = 0;
  };
};

struct Stopping final : foundation::Progress {
  void Begin(std::string_view, double, double) override {}
  bool Report(double) override { return false; }
};

TEST(ServerCheck, SaysWhatTheServerAnswered) {
  using Port = FakeTcp::Port;
  const std::string endless(5000, '-');
  const struct {
    Port relay;
    Port submission;
    const char* said;  // a part of it
    bool ready;
  } cases[] = {
      {{TcpOutcome::kOk, {"220 re", "ady\r\n"}},
       {},
       "ポート 25\nメールサーバーが応答しました。\n\n220 ready",
       true},
      {{TcpOutcome::kOk, {"220-one\r\n220-two\r\n", "220 three\r\nx"}},
       {},
       "220-one\n220-two\n220 three",
       true},
      {{TcpOutcome::kRefused, {}},
       {TcpOutcome::kOk, {"220 ok\r\n"}},
       "ポート 587\nメールサーバーが応答",
       true},
      {{TcpOutcome::kOk, {"554 no\r\n"}}, {}, "いまメールを受け付けません。\n\n554 no", false},
      {{TcpOutcome::kOk, {"220 \x95\x5c\x1b[1m\r\n"}}, {}, "220 ?\\?[1m", true},
      {{TcpOutcome::kOk, {endless}}, {}, "受け付けません", false},
      {{TcpOutcome::kOk, {"22"}}, {}, "接続を切りました。\n\n22", false},
      {{TcpOutcome::kOk, {}, TcpOutcome::kTimedOut}, {}, "接続できましたが、サーバーが応答しません", false},
      {{TcpOutcome::kTimedOut, {}},
       {TcpOutcome::kRefused, {}},
       "ポート 587\nサーバーに接続を断られました。",
       false},
      {{TcpOutcome::kNoHost, {}}, {}, "サーバーの名前が見つかりません。", false},
  };
  const ServerPlace place = *PlaceOfServer("smtp", false);
  foundation::NoProgress progress;
  for (const auto& each : cases) {
    FakeTcp tcp;
    tcp.ports = {{25, each.relay}, {587, each.submission}};
    const ServerAnswer answer = AskServer(tcp, place, progress);
    EXPECT_NE(Describe(place, answer).find(each.said), std::string::npos) << Describe(place, answer);
    EXPECT_EQ(IsReady(answer), each.ready) << each.said;
  }
  Stopping stopping;
  FakeTcp tcp;
  EXPECT_EQ(Describe(place, AskServer(tcp, place, stopping)), "");
}

TEST(ServerCheck, AsksTheRealNetwork) {
  foundation::NoProgress progress;
  // Nobody listens at the port for "nothing".
  EXPECT_EQ(AskServer(os::RealTcp(), {"127.0.0.1", {9}}, progress).outcome, TcpOutcome::kRefused);
  Stopping stopping;
  EXPECT_EQ(AskServer(os::RealTcp(), {"127.0.0.1", {9}}, stopping).outcome, TcpOutcome::kStopped);
}

}  // namespace
}  // namespace kova::mail
