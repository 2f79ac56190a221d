// The payment dialogs in real windows, with the bridge as a program of its own.

#include <afxwin.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "cashless/payment_entry.h"
#include "cashless/payment_journal.h"
#include "cashless/win32/cashless_dlg.h"
#include "cashless/win32/cashless_or_cash_dlg.h"
#include "cashless/win32/unresolved_payments_dialog.h"
#include "entry/kova_sub_tools.h"
#include "hosts/person/window_driver.h"
#include "platform/os/filesystem_path.h"
#include "tests/child_process.h"
#include "tests/windows/terminal_object.h"
#include "tests/windows/window_practice.h"

namespace {

using namespace kova::person;
using kova::cashless::CCashlessOrCashDlg;
using kova::cashless::JournalEntry;
using kova::cashless::PaymentOutcome;
using kova::testing::ChildProcess;
using kova::testing::TerminalObject;
using kova::testing::WindowPractice;
using kova::testing::Work;
using Payment = kova::cashless::PaymentDialog;
using Unresolved = kova::cashless::UnresolvedPaymentsDialog;

constexpr char kAllKinds[] =
    "[CASHLESS]\r\nUSE_CREDIT=1\r\nUSE_UNIONPAY=1\r\nUSE_ID=1\r\nUSE_WAON=1\r\nUSE_QUICPAY=1\r\nUSE_NANACO="
    "1\r\n"
    "USE_EDY=1\r\nUSE_SUICA=1\r\nUSE_DEBIT=1\r\nUSE_PITAPA=1\r\nUSE_NFCPAY=1\r\nUSE_QR=1\r\nPAY_WAON=07\r\n";
constexpr int kWaon = Payment::kFirstKind + 3;

class PaymentWindows : public testing::Test {
 protected:
  PaymentWindows() {
    EXPECT_EQ(kova::os::RealFiles().MakeFolder(Path("Cashless")), kova::os::FileOutcome::kOk);
    Write("GLOBALSETTING.ini", kAllKinds);
    UseTerminal("2");
  }
  std::string Path(const char* name) const { return practice_.Folder() + name; }
  void Write(const char* name, const std::string& text) {
    EXPECT_EQ(kova::os::RealFiles().Replace(Path(name), text), kova::os::FileOutcome::kOk);
  }
  void UseTerminal(const char* type) { Write("CashlessOpt.sys", std::string(type) + "\r\n"); }

  /// The bridge as another program, until the object goes.
  ChildProcess Bridge(const std::vector<std::string>& script) {
    kova::testing::SetVariable("KOVA_CASHLESS", kova::os::ToFilesystemPath(Path("Cashless")));
    return ChildProcess(kova::testing::ThisProgram().parent_path() / "Option" / "CashlessBridge.exe", script);
  }
  /// Takes a payment without being asked for cash; `person` has the payment dialog.
  int Pay(const std::function<void(HWND)>& person) {
    int answer = -9;
    Work([&] { answer = CKovaSubTools::Payment(nullptr, 12345, result_, "00000001 佐藤　健 様", 0, 1); },
         [&] {
           HWND dialog = Dialog("キャッシュレス決済");
           person(dialog);
           WaitUntilClosed(dialog);
         });
    return answer;
  }
  std::vector<JournalEntry> Recorded() {
    std::vector<JournalEntry> entries;
    kova::cashless::PaymentJournal journal(kova::os::RealFiles(), Path("app.ini.payments"));
    EXPECT_EQ(journal.Read(entries), kova::os::FileOutcome::kOk);
    return entries;
  }
  /// The extensions of the files in the exchange folder.
  std::string ExchangeFiles() {
    std::vector<std::string> names;
    EXPECT_EQ(kova::os::RealFiles().List(Path("Cashless"), names), kova::os::FileOutcome::kOk);
    std::string extensions;
    for (const std::string& name : names) extensions += name.substr(name.rfind('.'));
    return extensions;
  }
  static void WaitForText(HWND dialog, int control, const std::string& text) {
    WaitFor(text.c_str(), [&] { return Shown(Item(dialog, control)) == text; });
  }

  WindowPractice practice_{"payment"};
  CString result_;
};

TEST_F(PaymentWindows, IsAskedForAndPaidThroughTheBridge) {
  const ChildProcess bridge = Bridge({"/WORK:500"});
  int answer = -9;
  Work([&] { answer = CKovaSubTools::Payment(nullptr, 12345, result_, "00000001 佐藤　健 様", 0, 0); },
       [] {
         HWND choice = Dialog("お支払い方法");
         EXPECT_EQ(Faults(choice), "");
         Photograph(choice, "cashless_or_cash");
         Press(choice, kova::cashless::kChoseCashless);
         HWND dialog = Dialog("キャッシュレス決済");
         EXPECT_EQ(Faults(dialog), "");
         EXPECT_EQ(Shown(Item(dialog, Payment::kAmount)), "12,345円");
         Photograph(dialog, "payment");
         Press(dialog, kWaon);
         WaitForText(dialog, Payment::kStatus, "決済処理中...");
         EXPECT_EQ(Shown(Item(dialog, IDCANCEL)), "決済処理停止");
         EXPECT_FALSE(IsWindowEnabled(Item(dialog, kWaon)));
         // A second press of Enter must neither pay twice nor cancel.
         WaitFor("the focus", [&] { return FocusOf(dialog) == Item(dialog, Payment::kCode); });
         PressKey(FocusOf(dialog), VK_RETURN);
         PressKey(FocusOf(dialog), VK_SPACE);
         Photograph(dialog, "payment_waiting");
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(answer, 1);
  EXPECT_STREQ(result_, "07");
  ASSERT_EQ(Recorded().size(), 1U);
  EXPECT_EQ(Recorded()[0].outcome, PaymentOutcome::kPaid);
  EXPECT_EQ(ExchangeFiles(), "");
}

TEST_F(PaymentWindows, TellsWhyItWasRefusedAndPaysByAnotherKind) {
  result_ = "?";
  EXPECT_EQ(Pay([&](HWND dialog) {
              {
                const ChildProcess bridge = Bridge({"/WORK:0", "/RESULT:2092"});
                Press(dialog, Payment::kFirstKind);
                WaitForText(dialog, Payment::kCode, "2092");
              }
              EXPECT_EQ(Shown(Item(dialog, Payment::kMessage)), "取引不成立です。 (通信障害)");
              EXPECT_NE(Shown(Item(dialog, Payment::kNote)), "");
              EXPECT_EQ(Faults(dialog), "");
              Photograph(dialog, "payment_refused");
              EXPECT_EQ(FocusOf(dialog), Item(dialog, Payment::kFirstKind));
              Press(dialog, kWaon);  // and now nobody is there
              WaitForText(dialog, Payment::kCode, "2");
              PressKey(FocusOf(dialog), VK_ESCAPE);
            }),
            -1);
  EXPECT_STREQ(result_, "");
  ASSERT_EQ(Recorded().size(), 2U);
  EXPECT_EQ(Recorded()[0].outcome, PaymentOutcome::kUnknown);
  EXPECT_EQ(Recorded()[1].outcome, PaymentOutcome::kNotPaid);
}

TEST_F(PaymentWindows, WhatWasLeftOpenIsSettledAtTheNextPayment) {
  {
    const ChildProcess bridge = Bridge({"/WORK:60000"});
    EXPECT_EQ(Pay([&](HWND dialog) {
                Press(dialog, kWaon);
                WaitFor("the bridge", [&] { return ExchangeFiles() == ".pro"; });
                PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);  // Alt+F4
                WaitForText(dialog, Payment::kMessage, "決済端末にてリセット（決済取消）を行ってください。");
                Photograph(dialog, "payment_reset");
                PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
                PressKey(MessageBoxWindow("必ず決済端末で"), VK_RETURN);
              }),
              -1);
  }
  int answer = -9;
  Work([&] { answer = CKovaSubTools::CallCashless(nullptr, 500, result_, "next"); },
       [] {
         HWND open = Dialog("結果が確認できていない決済");
         EXPECT_EQ(Faults(open), "");
         EXPECT_EQ(ListCell(Item(open, Unresolved::kPayments), 0, 1), "12,345円");
         EXPECT_FALSE(IsWindowEnabled(Item(open, Unresolved::kPaid)));
         PutIn(open, Unresolved::kReason, "端末の控えで確認した。");
         Photograph(open, "unresolved_payments");
         Press(open, Unresolved::kPaid);
         HWND dialog = Dialog("キャッシュレス決済");
         PressKey(FocusOf(dialog), VK_ESCAPE);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(answer, 0);
  ASSERT_EQ(Recorded().size(), 1U);
  EXPECT_EQ(Recorded()[0].outcome, PaymentOutcome::kPaid);
  EXPECT_EQ(Recorded()[0].reason, "端末の控えで確認した。");
  EXPECT_EQ(ExchangeFiles(), "");
}

TEST_F(PaymentWindows, DrivesAControlInTraining) {
  UseTerminal("1");
  TerminalObject terminal;
  Write("GLOBALSETTING.ini",
        std::string(kAllKinds) + "Training=1\r\nINFOX_OCX=" + terminal.Name() + " FRONT\r\n");
  EXPECT_EQ(Pay([&](HWND dialog) {
              EXPECT_EQ(Faults(dialog), "");
              Press(dialog, kWaon);
              WaitForText(dialog, Payment::kCode, "114");
              EXPECT_EQ(Shown(Item(dialog, Payment::kMessage)), "取引不成立です。 (残高不足)");
              Photograph(dialog, "payment_training");
              Press(dialog, kWaon);
            }),
            1);
  EXPECT_STREQ(result_, "07");
  EXPECT_EQ(terminal.Log(),
            "Open(FRONT) ClaimDevice(3000) DeviceEnabled=-1 AsyncMode=-1 TrainingMode=-1 PaymentMedia=4 "
            "AuthorizeSales(1,12345,0,-1) DeviceEnabled=0 ReleaseDevice() Close() "
            "Open(FRONT) ClaimDevice(3000) DeviceEnabled=-1 AsyncMode=-1 TrainingMode=-1 PaymentMedia=4 "
            "AuthorizeSales(2,12345,0,-1) DeviceEnabled=0 ReleaseDevice() Close() "
            "DeviceEnabled=0 ReleaseDevice() Close() ");
}

TEST_F(PaymentWindows, SaysThatNoControlOrNoKindIsThere) {
  UseTerminal("3");
  EXPECT_EQ(Pay([&](HWND dialog) {
              Press(dialog, kWaon);
              WaitForText(dialog, Payment::kCode, "104");
              PressKey(FocusOf(dialog), VK_ESCAPE);
            }),
            -1);
  Write("GLOBALSETTING.ini", "");
  EXPECT_EQ(Pay([&](HWND dialog) {
              EXPECT_EQ(Faults(dialog), "");
              Photograph(dialog, "payment_no_kinds");
              Press(dialog, IDCANCEL);
            }),
            -1);
}

// The host's windows stay alive while the changer's program is at work.
TEST_F(PaymentWindows, WaitsForTheCashChanger) {
  Write("app.ini", "[GLOBAL]\r\nDATABASE=" + practice_.Folder() + "\r\n[CASHCHANGER]\r\nOPTION=1\r\n");
  kova::testing::SetVariable("KOVA_DRAWER", kova::os::ToFilesystemPath(Path("drawer.txt")));
  kova::testing::SetVariable("KOVA_CHANGER_WORK", "1000");
  std::filesystem::current_path(kova::testing::ThisProgram().parent_path());
  tagSALE sale{};
  sale.changeAmount = 300;
  int answer = -9;
  Work([&] { answer = CKovaSubTools::UseCashChanger(&practice_.Database(), &sale); },
       [] {
         HWND waiting = Dialog("お待ちください");
         EXPECT_EQ(Faults(waiting), "");
         Photograph(waiting, "cash_changer");
         PostMessageW(waiting, WM_SYSCOMMAND, SC_CLOSE, 0);  // does nothing: the money is on its way
         WaitUntilClosed(waiting);
       });
  EXPECT_EQ(answer, 1);
}

}  // namespace
