#include "cashless/payment_entry.h"

#include <gtest/gtest.h>

#include <string>

#include "cashless/payment_kinds.h"
#include "platform/os/testing/fake_files.h"

namespace kova::cashless {
namespace {

using os::testing::FakeFiles;
using os::testing::FakeProfile;

/// Writes down what it is asked for.
class ScriptedDialogs final : public PaymentDialogs {
 public:
  int choice = 0;
  bool pays = true;
  std::string log;

  int Choose(std::int32_t, unsigned, int flag) override {
    log += "ask" + std::to_string(flag) + " ";
    return choice;
  }
  bool PayByBridge(std::int32_t, std::string_view, std::string& result) override {
    log += "bridge ";
    result = "03";
    return pays;
  }
  bool PayByControl(std::int32_t, std::string_view, std::string& result) override {
    log += "control ";
    result = "04";
    return pays;
  }
};

TEST(Payment, TakesTheWayThatIsOffered) {
  const struct {
    int amount, offers, only, changer;
    unsigned type;
    int choice;
    bool pays;
    int answer;
    std::string log;
  } rows[] = {
      {0, 0, 1, 0, 2, 0, true, 0, ""},   // nothing to pay
      {-5, 1, 0, 0, 2, 0, true, 0, ""},  // straight to cashless, below 1
      {1, 0, 1, 1, 2, 0, true, 1, "bridge "},
      {1, 0, 1, 0, 3, 0, false, -1, "control "},
      {1, 0, 1, 0, 0, 0, true, 1, "control "},  // cashless only: no type is looked at
      {1, 0, 0, 0, 0, 0, true, 0, ""},
      {1, 0, 0, 0, 2, 101, true, 0, "ask0 "},
      {1, 0, 0, 1, 4, 102, true, 1, "ask0 bridge "},
      {1, 0, 0, 0, 1, 102, false, -1, "ask0 control "},
      {1, 0, 0, 0, 2, 2, true, -1, "ask0 "},
      {0, 0, 0, 0, 2, 102, true, 0, ""},
      {1, 1, 0, 1, 2, 102, true, 1, "ask1 bridge "},
      {1, 1, 0, 1, 0, 102, true, 0, ""},
      {1, 1, 0, 0, 2, 101, true, 1, "bridge "},
      {1, 1, 0, 0, 0, 102, true, 0, ""},
  };
  for (const auto& row : rows) {
    ScriptedDialogs dialogs;
    dialogs.choice = row.choice;
    dialogs.pays = row.pays;
    std::string result = "old";
    const PaymentCall call{row.amount, "表", row.offers != 0, row.only != 0};
    const auto answer = Payment(dialogs, call, row.changer != 0, row.type, result);
    EXPECT_EQ(static_cast<int>(answer), row.answer) << row.log << row.amount;
    EXPECT_EQ(dialogs.log, row.log) << row.amount << row.offers << row.only << row.changer << row.type;
    EXPECT_EQ(result != "old", row.log.ends_with("bridge ") || row.log.ends_with("control "));
  }
}

struct Changer final : CashChanger, PaymentMethods {
  std::string log;
  int Exchange(std::int32_t amount, const std::optional<std::string>& method) override {
    log += std::to_string(amount) + " " + method.value_or("-");
    return 7;
  }
  bool Read(std::string_view code, std::optional<std::string>& name) override {
    if (code != "99") name = "method " + std::string(code);
    return code != "99";
  }
};

TEST(UseCashChanger, ChecksAndReadsInOrder) {
  const struct {
    unsigned option;
    int amount;
    std::string call, giveBack, init;  // empty: not set
    std::string log;
    const char* method = "02";  // 99 cannot be read
  } rows[] = {
      {1, 300, "", "", "", "300 -"},
      {0, 300, "", "", "", ""},
      {1, 0, "", "", "", ""},
      {1, 300, "0", "", "", ""},
      {1, 300, "", "0", "", "300 -"},
      {1, -300, "", "0", "", ""},
      {1, -300, "", "1", "0", "-300 method 02"},
      {1, 300, "", "", "1", "300 -"},
      {1, 300, "", "", "0", "", "99"},
      {1, 300, "", "", "1", "300 -", "99"},
  };
  for (const auto& row : rows) {
    FakeFiles files;
    FakeProfile profile;
    Changer changer;
    profile.values["GLOBAL/DATABASE"] = "D:";
    if (!row.call.empty()) profile.values["CASHCHANGER/CALL"] = row.call;
    if (!row.giveBack.empty()) profile.values["CASHCHANGER/CASHRETURN"] = row.giveBack;
    if (!row.init.empty())
      files.contents["D:\\GLOBALSETTING.ini"] = "[GLOBAL]\nCASHCHANGER_INIT=" + row.init + "\n";
    const foundation::SettingsStore settings(profile, files);
    const int answer = UseCashChanger(changer, row.option, profile, settings, {row.amount, row.method}, changer);
    EXPECT_EQ(changer.log, row.log) << row.amount;
    EXPECT_EQ(answer, row.log.empty() ? 0 : 7);
  }
}

TEST(PaymentKinds, AreThoseThatAreTurnedOn) {
  const CashlessSettings settings = ReadCashlessSettings(foundation::SettingsSnapshot(
      "[CASHLESS]\nUSE_QR=1\nUSE_WAON=1\nPAY_WAON=07\nWAON_POINT=1\nUSE_CREDIT=0\nTraining=2\n"));
  ASSERT_EQ(settings.kinds.size(), 2u);
  EXPECT_EQ(settings.kinds[0].method, "07");
  const PaymentRequest request = MakeRequest(settings, settings.kinds[0], 980, "表");
  EXPECT_EQ(RequestText(request), "980\n0\n4\n1\n1\n0\n\n表\n");
}

}  // namespace
}  // namespace kova::cashless
