#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

#include <afxwin.h>

#include <fstream>
#include <string>

#include "entry/kova_com_dlg.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"

namespace {

using kova::store::PutText;

class Fillers : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str()), 0);
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
    app_.m_pszProfileName = profile_.c_str();
    std::ofstream(folder_.Native() / "app.ini", std::ios::binary)
        << "[GLOBAL]\r\nDATABASE=" << folder_.Path() << "\r\n";
#ifdef _WIN32
    if (GetParam()) {
      // Sorted: the entries keep the order of the list all the same.
      combo_.m_hWnd = CreateWindowW(L"COMBOBOX", L"", WS_CHILD | CBS_DROPDOWNLIST | CBS_SORT, 0, 0, 99, 99,
                                    HWND_MESSAGE, nullptr, nullptr, nullptr);
      ASSERT_NE(combo_.m_hWnd, nullptr);
    }
#endif
  }
  void TearDown() override {
    CKovaComDlg::FreeComboItemData(&combo_);
#ifdef _WIN32
    if (combo_.m_hWnd != nullptr) DestroyWindow(combo_.m_hWnd);
#endif
  }
  template <typename Table>
  void Put(const char* code, const char* name, const char* sortOrder = "") {
    Table table(nullptr, 0);
    ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
    PutText(table.record.code, code);
    PutText(table.record.name, name);
    PutText(table.record.sortOrder, sortOrder);
    if constexpr (requires { table.record.categoryCode; }) PutText(table.record.categoryCode, "02");
    ASSERT_EQ(table.Insert(), 0);
  }
  /// "text{item data}|" of each entry, "*" before the selected one. The data as text.
  std::string Shown() const {
    std::string shown;
    for (int i = 0; i < combo_.GetCount(); ++i) {
      CString text;
      combo_.GetLBText(i, text);
      const auto* data = reinterpret_cast<const char*>(combo_.GetItemData(i));
      shown += std::string(i == combo_.GetCurSel() ? "*" : "") + text.GetString() + "{" +
               (data == nullptr ? "" : data) + "}|";
    }
    return shown;
  }

  kova::os::testing::TemporaryFolder folder_{"fillers"};
  const std::string profile_ = folder_.Path() + "app.ini";
  CWinApp app_;
  CKovaDBSys db_;
  CComboBox combo_;
};

TEST_P(Fillers, FillTheHostsBox) {
  Put<CDoctorDB>("09", "髙﨑", "1");
  Put<CDoctorDB>("08", "あ", "2");
  EXPECT_EQ(CKovaComDlg::EnumDoctor(&db_, &combo_, "08", 1), 0);
  EXPECT_EQ(Shown(), "{}|髙﨑{09}|*あ{08}|");
  CKovaComDlg::FreeComboItemData(&combo_);
  EXPECT_EQ(Shown(), "");
  EXPECT_NE(CKovaComDlg::EnumUnit(nullptr, &combo_, "01", 1), 0);
  EXPECT_EQ(Shown(), "{}|");
  CKovaComDlg::FreeComboItemData(&combo_);
  Put<CIntroDrDB>("001", "表");
  CPtrArray doctors;
  EXPECT_EQ(CKovaComDlg::EnumIntroDoctor(&db_, &combo_, &doctors, "001", 255, 1), 0);
  EXPECT_EQ(combo_.GetCurSel(), 1);
  ASSERT_EQ(doctors.GetSize(), 1);
  EXPECT_EQ(std::string(static_cast<tagINTRODR*>(doctors.GetAt(0))->name), "表");
  CKovaComDlg::FreeIntroDoctors(&doctors);
  EXPECT_EQ(doctors.GetSize(), 0);
}

TEST_P(Fillers, FindTheDatabaseByTheProfile) {
  Put<CCreditItemDB>("001", "表");
  EXPECT_EQ(CKovaComDlg::EnumCreditItemsOf(&combo_, "02", "001"), 0);
  EXPECT_EQ(Shown(), "*表" + std::string(99, ' ') + " 02001{02}|");
  CKovaComDlg::FreeComboItemData(&combo_);
  std::ofstream(folder_.Native() / "freedatename.dat", std::ios::binary) << "表\r\n検診\r\n";
  CStringArray texts, names;
  texts.Add("old");
  CKovaComDlg::EnumFreeDateTblName(&texts, &names);
  ASSERT_EQ(texts.GetSize(), 2);
  EXPECT_EQ(texts.GetAt(1), "検診 1");
  EXPECT_EQ(names.GetAt(1), "検診");
  app_.m_pszProfileName = nullptr;
  EXPECT_EQ(CKovaComDlg::EnumCreditItemsOf(&combo_, "02", "001"), 12);
  CKovaComDlg::EnumFreeTblName(&texts);
  EXPECT_EQ(texts.GetSize(), 0);
}

TEST_P(Fillers, TakeNullPointers) {
  EXPECT_EQ(CKovaComDlg::EnumCategories(&db_, nullptr, nullptr, 1, nullptr), 18);
  EXPECT_EQ(CKovaComDlg::EnumCategories(&db_, &combo_, nullptr, 0, nullptr), 0);
  EXPECT_NE(CKovaComDlg::EnumIntroDoctor(nullptr, &combo_, nullptr, nullptr, 0, 0), 0);
  CKovaComDlg::EnumFreeTblItem(&db_, nullptr, &combo_, nullptr, nullptr, 0);
  CKovaComDlg::EnumFreeDateTblName(nullptr, nullptr);
  CKovaComDlg::EnumFreeTblName(nullptr);
  CKovaComDlg::FreeComboItemData(nullptr);
  CKovaComDlg::FreeIntroDoctors(nullptr);
}

// The object without a window, and on Windows a real list.
#ifdef _WIN32
INSTANTIATE_TEST_SUITE_P(Boxes, Fillers, testing::Bool());
#else
INSTANTIATE_TEST_SUITE_P(Boxes, Fillers, testing::Values(false));
#endif

}  // namespace
