// The popup for dates and the column dialogs in real windows.

#include <windows.h>
#include <afxcmn.h>
#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>

#include "controls/list_columns.h"
#include "controls/win32/date_input_dialog.h"
#include "controls/win32/show_item_list_sort_dlg.h"
#include "controls/win32/show_list_item_dlg.h"
#include "entry/date_input.h"
#include "entry/kova_com_dlg.h"
#include "hosts/person/window_driver.h"
#include "hosts/reception/resource.h"
#include "platform/os/application_profile.h"
#include "platform/recordstore/table.h"
#include "tests/child_process.h"
#include "tests/run_program.h"
#include "tests/windows/window_practice.h"

namespace {

using namespace kova::person;
using kova::store::On;
using kova::testing::WindowPractice;
using kova::testing::Work;
using Popup = kova::controls::DateInputDialog;
using Simple = kova::controls::CShowListItemDlg;
using Sorted = kova::controls::CShowItemListSortDlg;

/// A window of the host's; hidden, as nobody answers for it while its thread waits for the person.
struct HostWindow {
  HostWindow(const wchar_t* windowClass, DWORD style, RECT at)
      : handle(CreateWindowExW(0, windowClass, L"host", style, at.left, at.top, at.right - at.left,
                               at.bottom - at.top, nullptr, nullptr, nullptr, nullptr)) {}
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  ~HostWindow() { DestroyWindow(handle); }
  HWND handle;
};

// ---- The popup.

class DatePopup : public testing::Test {
 protected:
  /// What the popup gives, with what the date is by then.
  std::string Enter(int year, int month, int day, const std::function<void(HWND)>& person) {
    CDateInput input;
    input.year = year;
    input.month = month;
    input.day = day;
    input.cover = &field_;
    input.isBirth = true;
    std::intptr_t result = 0;
    Work([&] { result = input.DoModal(); },
         [&] {
           HWND popup = Dialog("日付入力");
           WaitFor("the year field", [&] { return FocusOf(popup) == Item(popup, Popup::kYear); });
           person(popup);
           WaitUntilClosed(popup);
         });
    return std::to_string(result) + ": " + std::to_string(input.year) + "/" + std::to_string(input.month) +
           "/" + std::to_string(input.day);
  }
  static std::string Fields(HWND popup) {
    std::string text;
    for (const int control : {Popup::kEra, Popup::kYear, Popup::kMonth, Popup::kDay})
      text += (control == Popup::kEra ? "" : " ") + Shown(Item(popup, control));
    return text;
  }
  static void WaitForFields(HWND popup, const std::string& fields) {
    WaitFor(("the fields " + fields).c_str(), [&] { return Fields(popup) == fields; });
  }
  static void EnterIn(HWND popup, int control, int next) {
    PressKey(Item(popup, control), VK_RETURN);
    WaitFor("the next field", [&] { return FocusOf(popup) == Item(popup, next); });
  }
  void Lay(RECT at) {
    SetWindowPos(over_.handle, nullptr, at.left, at.top, at.right - at.left, at.bottom - at.top,
                 SWP_NOZORDER);
  }

  HostWindow over_{L"STATIC", WS_POPUP | WS_BORDER, {120, 90, 900, 150}};
  CWnd field_;
  DatePopup() { field_.m_hWnd = over_.handle; }
};

TEST_F(DatePopup, LiesOverTheFieldAndGoesOnWithEnter) {
  EXPECT_EQ(Enter(1989, 1, 7,
                  [&](HWND popup) {
                    RECT cover{}, place{};
                    GetWindowRect(over_.handle, &cover);
                    GetWindowRect(popup, &place);
                    EXPECT_TRUE(EqualRect(&cover, &place));
                    EXPECT_EQ(Fields(popup), "昭和 64 1 7");
                    EXPECT_EQ(Faults(popup), "");
                    const LRESULT selected = SendMessageW(Item(popup, Popup::kYear), EM_GETSEL, 0, 0);
                    EXPECT_EQ(selected, MAKELRESULT(0, 2));
                    PressKey(Item(popup, Popup::kEra), 'R');
                    WaitForFields(popup, "令和 64 1 7");
                    EnterIn(popup, Popup::kEra, Popup::kMonth);  // from where the focus is: the year
                    PressKey(Item(popup, Popup::kMonth), VK_DOWN);
                    WaitForFields(popup, "令和 64 12 7");
                    EnterIn(popup, Popup::kMonth, Popup::kDay);
                    PutIn(popup, Popup::kDay, "３２");
                    WaitFor("the note", [&] { return Shown(Item(popup, Popup::kNote)) == "暦にない日付"; });
                    Photograph(popup, "date_impossible");
                    PressKey(Item(popup, Popup::kDay), VK_RETURN);
                  }),
            "1: 2082/12/32");
}

TEST_F(DatePopup, SpreadsWholeDates) {
  Lay({1000, 700, 1040, 710});  // too small, and near the screen's corner
  EXPECT_EQ(Enter(0, 0, 0,
                  [&](HWND popup) {
                    EXPECT_EQ(Fields(popup), "   ");
                    EXPECT_EQ(Faults(popup), "");
                    PutIn(popup, Popup::kYear, "昭和５０年１月１日");
                    WaitForFields(popup, "昭和 50 1 1");
                    EXPECT_EQ(Shown(Item(popup, Popup::kNote)).substr(0, 5), "(水) ");
                    Photograph(popup, "date_birth");
                    PutIn(popup, Popup::kYear, "h2");  // typed: waits until the field is left
                    EnterIn(popup, Popup::kYear, Popup::kMonth);
                    WaitForFields(popup, "平成 2 1 1");
                    PutIn(popup, Popup::kYear, "元");
                    EnterIn(popup, Popup::kMonth, Popup::kDay);
                    PressKey(Item(popup, Popup::kDay), VK_RETURN);
                  }),
            "1: 1989/1/1");
}

TEST_F(DatePopup, RoutesTheMouse) {
  EXPECT_EQ(Enter(2024, 4, 1,
                  [&](HWND popup) {
                    HWND era = Item(popup, Popup::kEra);
                    Click(MiddleOf(Item(popup, Popup::kDay)));
                    WaitFor("the day", [&] { return FocusOf(popup) == Item(popup, Popup::kDay); });
                    Click(MiddleOf(era));
                    WaitFor("the list", [&] { return SendMessageW(era, CB_GETDROPPEDSTATE, 0, 0) != 0; });
                    EXPECT_EQ(FocusOf(popup), Item(popup, Popup::kYear));
                    Photograph(popup, "date_eras");
                    SendMessageW(era, CB_SHOWDROPDOWN, FALSE, 0);
                    Click(MiddleOf(Item(popup, Popup::kMonth)));
                    WaitFor("the month", [&] { return FocusOf(popup) == Item(popup, Popup::kMonth); });
                    PutIn(popup, Popup::kMonth, "9");
                    Click({20, 20});
                  }),
            "2: 2024/4/1");
}

// ---- The column dialogs.

class ColumnDialogs : public testing::Test {
 protected:
  ColumnDialogs() {
    list_.m_hWnd = window_.handle;
    const wchar_t* titles[] = {L"ID", L"フリガナ", L"氏名", L"電話"};
    for (int i = 0; i < 4; ++i) {
      LVCOLUMNW column{};
      column.mask = LVCF_TEXT | LVCF_WIDTH;
      column.cx = 80;
      column.pszText = const_cast<wchar_t*>(titles[i]);
      SendMessageW(window_.handle, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i),
                   reinterpret_cast<LPARAM>(&column));
    }
    for (const char* name : {"ID", "フリガナ", "氏名", "電話"}) names_.Add(name);
  }
  int OpenSorted(const std::function<void(HWND)>& person) {
    int result = 0;
    Work([&] { result = CKovaComDlg::OpenListItemSettingSort(&list_, "Reserv", &names_, 0, nullptr, 0); },
         [&] {
           HWND dialog = Dialog("表示項目の設定");
           person(dialog);
           WaitUntilClosed(dialog);
         });
    return result;
  }
  std::string Stored() {
    std::string text;
    for (const auto& each : kova::controls::ReadColumns(profile_, "Reserv", 4))
      text += (text.empty() ? "" : " ") + std::to_string(each.column) + ":" + std::to_string(each.width);
    return text;
  }
  /// "ID+ 氏名-": the rows as they are shown.
  static std::string Rows(HWND dialog) {
    HWND list = Item(dialog, Sorted::kItems);
    std::string text;
    for (int i = 0; i < ListView_GetItemCount(list); ++i)
      text += (i == 0 ? "" : " ") + ListCell(list, i, 0) + (ListView_GetCheckState(list, i) == 1 ? "+" : "-");
    return text;
  }
  static void WaitForRows(HWND dialog, const std::string& rows) {
    WaitFor(("the rows " + rows).c_str(), [&] { return Rows(dialog) == rows; });
  }

  WindowPractice practice_{"controls"};
  kova::os::IniApplicationProfile profile_{kova::os::RealFiles(), practice_.Folder() + "app.ini"};
  HostWindow window_{WC_LISTVIEWW, WS_POPUP | LVS_REPORT, {10, 10, 400, 200}};
  CListCtrl list_;
  CStringArray names_;
};

TEST_F(ColumnDialogs, OrderColumnsAndKeepTheirWidths) {
  profile_.WriteInt("Reserv", "ListWidth00", 60);
  profile_.WriteInt("Reserv", "ListWidth02", 140);
  EXPECT_EQ(OpenSorted([&](HWND dialog) {
              WaitForRows(dialog, "ID+ フリガナ- 氏名+ 電話-");
              HWND list = Item(dialog, Sorted::kItems);
              EXPECT_EQ(Faults(dialog), "");
              EXPECT_EQ(FocusOf(dialog), list);
              PressKey(list, VK_DOWN, true);
              WaitForRows(dialog, "フリガナ- ID+ 氏名+ 電話-");
              Press(dialog, Sorted::kUp);
              WaitForRows(dialog, "ID+ フリガナ- 氏名+ 電話-");
              DragAndDrop(dialog, CellOnScreen(list, 0, 0), CellOnScreen(list, 2, 0));
              WaitForRows(dialog, "フリガナ- 氏名+ ID+ 電話-");
              Press(dialog, Sorted::kAll);
              WaitForRows(dialog, "フリガナ+ 氏名+ ID+ 電話+");
              ListView_SetCheckState(list, 1, FALSE);
              Press(dialog, Sorted::kFirstOption);
              Photograph(dialog, "columns_sorted");
              Press(dialog, IDOK);
            }),
            1);
  EXPECT_EQ(Stored(), "1:100 2:-140 0:60 3:100");
  EXPECT_EQ(profile_.GetInt("PatientInfo", "Parent", 7), 0);
  EXPECT_EQ(profile_.GetInt("PatientInfo", "Reserv", 7), 1);
  EXPECT_EQ(OpenSorted([&](HWND dialog) {
              WaitForRows(dialog, "フリガナ+ 氏名- ID+ 電話+");
              EXPECT_EQ(IsDlgButtonChecked(dialog, Sorted::kFirstOption), static_cast<UINT>(BST_UNCHECKED));
              Press(dialog, Sorted::kReset);
              WaitForRows(dialog, "ID+ フリガナ+ 氏名- 電話+");
              EXPECT_EQ(IsDlgButtonChecked(dialog, Sorted::kFirstOption), static_cast<UINT>(BST_CHECKED));
              PressKey(Item(dialog, Sorted::kItems), VK_ESCAPE);
            }),
            2);
  EXPECT_EQ(Stored(), "1:100 2:-140 0:60 3:100");
}

TEST_F(ColumnDialogs, ShowColumnsOfTheListAndSayWhenNothingCanBeStored) {
  int order[] = {2, 0, 1, 3};
  ListView_SetColumnOrderArray(window_.handle, 4, order);
  int result = 0;
  Work([&] { result = CKovaComDlg::OpenListItemSetting(&list_, "Reserv", nullptr); },
       [&] {
         HWND dialog = Dialog("表示項目の設定");
         WaitForRows(dialog, "氏名+ ID+ フリガナ+ 電話+");
         EXPECT_EQ(Faults(dialog), "");
         Press(dialog, Simple::kNone);
         WaitForRows(dialog, "氏名- ID- フリガナ- 電話-");
         ListView_SetCheckState(Item(dialog, Simple::kItems), 0, TRUE);
         Photograph(dialog, "columns_simple");
         SetFileAttributesW((practice_.Native() / "app.ini").c_str(), FILE_ATTRIBUTE_READONLY);
         Press(dialog, IDOK);
         HWND told = MessageBoxWindow("保存できませんでした");
         Press(told, IDOK);
         WaitUntilClosed(told);
         SetFileAttributesW((practice_.Native() / "app.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
         Press(dialog, IDOK);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(profile_.GetInt("Reserv", "Item2", 7), 1);
  EXPECT_EQ(profile_.GetInt("Reserv", "Item3", 7), 0);
  EXPECT_EQ(CKovaComDlg::OpenListItemSetting(nullptr, "Reserv", nullptr), 2);
  EXPECT_EQ(CKovaComDlg::OpenListItemSettingSort(nullptr, "Reserv", nullptr, 0, nullptr, 0), 2);
}

TEST_F(ColumnDialogs, TakeAnyNumberOfColumns) {
  for (const int count : {0, 200}) {
    names_.RemoveAll();
    for (int i = 0; i < count; ++i) names_.Add("列");
    EXPECT_EQ(OpenSorted([&](HWND dialog) {
                HWND list = Item(dialog, Sorted::kItems);
                WaitFor("the rows", [&] { return ListView_GetItemCount(list) == count; });
                Press(dialog, Sorted::kDown);
                Press(dialog, Sorted::kReset);
                Press(dialog, IDOK);
              }),
              1);
  }
  EXPECT_EQ(profile_.GetInt("Reserv", "ListHeaderID199", 7), 199);
}

// ---- The example host.

TEST(Reception, ListsPatientsInItsColumnsAndTakesADateOfBirth) {
  WindowPractice practice("reception");
  On<CPatientDB> table(practice.Database());
  kova::store::PutText(table.record.patientCode, "1");
  kova::store::PutText(table.record.name, "山田　表太郎");
  kova::store::PutText(table.record.reading, "ﾔﾏﾀﾞ ﾋｮｳﾀﾛｳ");
  ASSERT_EQ(table.Insert(), 0);
  const auto folder = std::filesystem::current_path();
  std::filesystem::current_path(practice.Native());
  kova::testing::ChildProcess host(kova::testing::BuiltProgram("reception"), {"--app", "app.ini"});
  const auto only = [](const char* title) { return Dialogs(title, 1).front(); };
  Work([] {},
       [&] {
         HWND reception = only("受付");
         const auto command = [&](int id) {
           PostMessageW(reception, WM_COMMAND, static_cast<WPARAM>(id), 0);
         };
         command(IDM_QUERY_KANA);
         HWND query = only("該当患者リスト");
         Press(query, IDOK);
         WaitUntilClosed(query);
         command(IDM_BIRTH_DATE);
         HWND popup = only("日付入力");
         PutIn(popup, Popup::kYear, "S50.1.12");
         WaitFor("the day", [&] { return Shown(Item(popup, Popup::kDay)) == "12"; });
         Photograph(reception, "reception_birth_date");
         PressKey(Item(popup, Popup::kDay), VK_RETURN);
         WaitUntilClosed(popup);
         command(IDM_PATIENTS);
         HWND patients = only("患者一覧");
         const auto columns = [&] {
           return Header_GetItemCount(ListView_GetHeader(Item(patients, IDC_PATIENTS)));
         };
         EXPECT_EQ(columns(), 5);
         Photograph(patients, "reception_patients");
         Press(patients, IDC_COLUMNS);
         HWND dialog = only("表示項目の設定");
         Press(dialog, Sorted::kAll);
         Press(dialog, IDOK);
         WaitFor("all columns", [&] { return columns() == 7; });
         PostMessageW(patients, WM_COMMAND, IDCANCEL, 0);
         WaitUntilClosed(patients);
         command(IDM_RESERVATION_COLUMNS);
         HWND simple = only("表示項目の設定");
         EXPECT_EQ(ListView_GetItemCount(Item(simple, kova::controls::CShowListItemDlg::kItems)), 7);
         Press(simple, kova::controls::CShowListItemDlg::kNone);
         Press(simple, IDOK);
         WaitUntilClosed(simple);
         PostMessageW(reception, WM_CLOSE, 0, 0);
         EXPECT_EQ(host.Wait(), 0);
       });
  std::filesystem::current_path(folder);
  const kova::os::IniApplicationProfile profile(kova::os::RealFiles(), practice.Folder() + "app.ini");
  EXPECT_EQ(profile.GetInt("Reserv", "Item6", 1), 0);
  ASSERT_EQ(table.GetPatient1Data("1"), 0);
  EXPECT_EQ(kova::store::GetText(table.record.birthDate), "19750112");
}

}  // namespace
