// The choice among several addresses in a real window.

#include <afxwin.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

#include "entry/kova_com_dlg.h"
#include "hosts/person/window_driver.h"
#include "postal/win32/select_address_dlg.h"
#include "tests/windows/window_practice.h"

namespace {

using namespace kova::person;
using namespace kova::postal;
using kova::testing::Work;
using Select = CSelectAddressDlg;

std::string Ask(const std::function<std::string()>& program, const std::function<void(HWND)>& person) {
  std::string answer = "?";
  Work([&] { answer = program(); },
       [&] {
         HWND window = Dialog("住所検索");
         person(window);
         WaitUntilClosed(window);
       });
  return answer;
}

void WaitForCount(HWND window, const std::string& count) {
  WaitFor("the count", [&] { return Shown(Item(window, Select::kCount)) == "件数:  " + count; });
}

// On the list of one city that is laid out beside the programs.
TEST(AddressWindow, ChoosesTheCodeOfAnAddress) {
  EXPECT_EQ(
      Ask([] { return CKovaComDlg::SearchPostFromAddress(nullptr, "東京都千代田区", "", 0).GetString(); },
          [](HWND window) {
            WaitForCount(window, "61 / 61");
            EXPECT_EQ(Faults(window), "");
            PutIn(window, Select::kText, "ｶﾝﾀﾞ");  // the reading is in no address
            WaitForCount(window, "0 / 61");
            PutIn(window, Select::kText, "１０１ 神田");
            WaitForCount(window, "32 / 61");
            HWND list = Item(window, Select::kList);
            EXPECT_EQ(ListCell(list, 1, 0), "101-0046");
            EXPECT_EQ(ListCell(list, 1, 1), "東京都千代田区神田多町");
            EXPECT_TRUE(Shown(Item(window, Select::kAge)).starts_with("住所データ: 2"));
            PressKey(Item(window, Select::kText), VK_DOWN);
            WaitFor("the second row", [&] { return ListView_GetNextItem(list, -1, LVNI_SELECTED) == 1; });
            Photograph(window, "select_address");
            PressKey(Item(window, Select::kText), VK_RETURN);
          }),
      "101-0046");
}

TEST(AddressWindow, EscapesAndAnswersAtOnce) {
  const auto ask = [](const char* code) {
    return CKovaComDlg::SearchAddressFormPost(nullptr, code, 0).GetString();
  };
  EXPECT_EQ(Ask([&] { return ask("102"); },
                [](HWND window) {
                  WaitForCount(window, "15 / 15");
                  EXPECT_EQ(ListCell(Item(window, Select::kList), 0, 0), "東京都千代田区飯田橋");
                  PressKey(Item(window, Select::kText), VK_ESCAPE);
                }),
            "");
  EXPECT_STREQ(ask("１００－０００１"), "東京都千代田区千代田");
  EXPECT_STREQ(ask("9999999"), "");
}

TEST(AddressWindow, ShowsManyAtOnce) {
  Candidates many{Wanted::kAddress, {}};
  for (int i = 0; i < 100000; ++i) many.list.push_back({"", "表町" + std::to_string(i) + "番"});
  Select dialog(AddressChoice(std::move(many)), "");
  EXPECT_EQ(Ask([&] { return dialog.Run(nullptr); },
                [](HWND window) {
                  WaitForCount(window, "100000 / 100000");
                  PutIn(window, Select::kText, "９９９９９番");
                  WaitForCount(window, "1 / 100000");
                  HWND list = Item(window, Select::kList);
                  NMITEMACTIVATE click{};
                  click.hdr = {list, Select::kList, static_cast<UINT>(NM_DBLCLK)};
                  SendMessageW(window, WM_NOTIFY, Select::kList, reinterpret_cast<LPARAM>(&click));
                }),
            "表町99999番");
}

}  // namespace
