// The patient query in a real window.

#include <afxwin.h>
#include <gtest/gtest.h>

#include <string>

#include "entry/kova_com_dlg.h"
#include "hosts/person/window_driver.h"
#include "pickers/win32/query_patient_dlg.h"
#include "platform/recordstore/table.h"
#include "tests/windows/window_practice.h"

namespace {

using namespace kova::person;
using kova::store::PutText;
using kova::store::On;
using kova::testing::WindowPractice;
using kova::testing::Work;
using Query = kova::pickers::CQueryPatientDlg;

class PatientQueryWindow : public testing::Test {
 protected:
  PatientQueryWindow() {
    Add("00000001", "佐藤　健", "ｻﾄｳ ｹﾝ", 1);
    Add("00000002", "佐藤　能子", "ｻﾄｳ ﾖｼｺ", 2);
    Add("00000003", "斎藤　十", "ｻｲﾄｳ ﾐﾂﾙ", 1);
    Add("00000004", "山田　表太郎", "ﾔﾏﾀﾞ ﾋｮｳﾀﾛｳ", 1);
  }
  void Add(const char* code, const char* name, const char* reading, int sex) {
    On<CPatientDB> table(practice_.Database());
    PutText(table.record.patientCode, code);
    PutText(table.record.name, name);
    PutText(table.record.reading, reading);
    table.record.sexCode = static_cast<std::uint8_t>(sex);
    ASSERT_EQ(table.Insert(), 0);
  }
  std::string Ask(const char* mode, const char* text, const std::function<void(HWND)>& person) {
    std::string chosen = "?";
    Work([&] { chosen = CKovaComDlg::KCDQueryPatientData(&practice_.Database(), mode, text).GetString(); },
         [&] {
           HWND query = Dialog("該当患者リスト");
           person(query);
           WaitUntilClosed(query);
         });
    return chosen;
  }
  static void WaitForCount(HWND query, int count) {
    const std::string text = "件数:  " + std::to_string(count);
    WaitFor("the hits", [&] { return Shown(Item(query, Query::kCount)) == text; });
  }

  WindowPractice practice_{"query"};
};

TEST_F(PatientQueryWindow, NarrowsWhileTypingAndChooses) {
  EXPECT_EQ(Ask("BYKANA", "",
                [](HWND query) {
                  WaitForCount(query, 4);
                  EXPECT_EQ(Faults(query), "");
                  PutIn(query, Query::kText, "さとう");  // found by the half-width readings too
                  WaitForCount(query, 2);
                  HWND hits = Item(query, Query::kHits);
                  EXPECT_EQ(ListCell(hits, 1, 3), "佐藤　能子");
                  EXPECT_EQ(ListCell(hits, 1, 4), "女");
                  Photograph(query, "patient_query");
                  PressKey(Item(query, Query::kText), VK_DOWN);
                  WaitFor("the list's focus", [&] { return FocusOf(query) == hits; });
                  PressKey(hits, VK_DOWN);
                  WaitFor("the second row",
                          [&] { return ListView_GetNextItem(hits, -1, LVNI_SELECTED) == 1; });
                  PressKey(hits, VK_RETURN);
                }),
            "00000002");
}

TEST_F(PatientQueryWindow, ChangesModeSortsAndEscapes) {
  EXPECT_EQ(Ask("BYNAME", "佐藤",
                [](HWND query) {
                  WaitForCount(query, 2);
                  Press(query, Query::kById);
                  PutIn(query, Query::kText, "０００");  // full-width digits
                  WaitForCount(query, 4);
                  HWND hits = Item(query, Query::kHits);
                  NMLISTVIEW click{};
                  click.hdr = {hits, Query::kHits, static_cast<UINT>(LVN_COLUMNCLICK)};
                  click.iSubItem = 1;
                  SendMessageW(query, WM_NOTIFY, Query::kHits, reinterpret_cast<LPARAM>(&click));
                  SendMessageW(query, WM_NOTIFY, Query::kHits, reinterpret_cast<LPARAM>(&click));
                  EXPECT_EQ(ListCell(hits, 0, 1), "00000004");
                  PressKey(Item(query, Query::kText), VK_ESCAPE);
                }),
            "");
}

}  // namespace
