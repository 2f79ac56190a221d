// The mail dialogs in real windows, opened by the exported operations and worked as a person works them.

#include <afxwin.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "entry/kova_com_dlg.h"
#include "entry/kova_sub_tools.h"
#include "hosts/person/window_driver.h"
#include "mail/win32/mail_preview_dialog.h"
#include "mail/win32/template_editor_dialog.h"
#include "mail/win32/template_tree_dialog.h"
#include "platform/os/clock.h"
#include "tests/windows/window_practice.h"

namespace {

using namespace kova::person;
using kova::mail::MailPreviewDialog;
using kova::store::PutText;
using kova::testing::WindowPractice;
using kova::testing::Work;
using Editor = kova::mail::TemplateEditorDialog;
using Tree = kova::mail::TemplateTreeDialog;
using T = CKovaSubTools;
using Texts = std::vector<std::string>;

constexpr const char* kEditorTitle = "メール用テンプレートの設定";
constexpr const char* kTreeTitle = "テンプレート選択";
constexpr const char* kFinished =
    "治療終了のお知らせ（表紙・ソフト・予定の変更を含む、とても長い名前のテンプレート）";

class MailDialogs : public testing::Test {
 protected:
  MailDialogs() {
    Put(1, "予約のお知らせ", "【ご予約】$_REDATE",
        "$_PNAME 様\r\n\r\n$_REDATE $_RETIME にお待ちしております。");
    Put(6, "来院のお知らせ", "来院されました", "$_PARENTNAME 様\r\n$_PNAME 様が来院されました。");
    Put(7, kFinished, "治療が終わりました", "$_PNAME 様の治療が終わりました。");
    WriteIndex("8");
  }

  void Put(int number, const char* name, const char* subject, const char* body) {
    ASSERT_EQ(T::SetReservationTemplate(number, name, subject, body), 0);
  }
  void WriteIndex(const char* text) {
    (void)kova::os::RealFiles().Replace(practice_.Folder() + "templates\\$mt.index", text);
  }
  static Texts Stored(int number) {
    CString name, subject, body;
    if (T::GetReservationTemplate(number, name, subject, body) != 0) return {};
    return {name.GetString(), subject.GetString(), body.GetString()};
  }
  void WriteReservation() {
    tagPATIENTDB patient{};
    PutText(patient.patientCode, "00000123");
    PutText(patient.name, "山田　表太郎");
    tagPATIENTDB2 contact{};
    PutText(contact.patientCode, "00000123");
    PutText(contact.mailAddress1, "yamada@example.jp");
    contact.mailPermission = 1;
    tagRESERVATION reservation{};
    PutText(reservation.reservationNumber, "000000000001");
    PutText(reservation.patientCode, "00000123");
    PutText(reservation.reservationDate, kova::mail::DayAfter(Today(), 1));
    PutText(reservation.startTime, "0930");
    Insert<CPatientDB>(patient);
    Insert<CPatientDB2>(contact);
    Insert<CReservationDB>(reservation);
  }
  static std::string Today() {
    const std::tm now = kova::os::LocalTime();
    char text[16];
    std::strftime(text, sizeof text, "%Y%m%d", &now);
    return text;
  }
  template <typename Table, typename Record>
  void Insert(const Record& record) {
    Table table(nullptr, 0);
    ASSERT_EQ(table.SetAssociatedDB(&practice_.Database()), 0);
    table.record = record;
    ASSERT_EQ(table.Insert(), 0);
  }

  WindowPractice practice_{"mail_dialogs"};
};

TEST_F(MailDialogs, EditorShowsTheRolesTemplateAndStoresWhatWasTyped) {
  int result = 0;
  Work([&] { result = CKovaComDlg::OpenMailTemplateSetting(nullptr, 2); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         EXPECT_EQ(Shown(Item(editor, Editor::kName)), "来院のお知らせ");
         EXPECT_EQ(Shown(Item(editor, Editor::kSubject)), "来院されました");
         EXPECT_EQ(ComboItems(Item(editor, Editor::kName)),
                   (Texts{"予約のお知らせ", "来院のお知らせ", kFinished}));
         EXPECT_EQ(Faults(editor), "");
         Photograph(editor, "template_editor");
         Choose(editor, Editor::kName, kFinished);
         WaitFor("the other template",
                 [&] { return Shown(Item(editor, Editor::kSubject)) == "治療が終わりました"; });
         // At the caret, over the selection; and taken back again.
         HWND body = Item(editor, Editor::kBody);
         SendMessageW(body, EM_SETSEL, 0, 7);
         Press(editor, Editor::kPlaceholders + 7);
         WaitFor("the word", [&] { return Shown(body) == "$_PID 様の治療が終わりました。"; });
         EXPECT_EQ(FocusOf(editor), body);
         Press(editor, Editor::kUndo);
         WaitFor("the undoing", [&] { return Shown(body) == "$_PNAME 様の治療が終わりました。"; });
         PutIn(editor, Editor::kSubject, "お大事になさってください");
         PressKey(Item(editor, Editor::kSubject), VK_RETURN);
         WaitUntilClosed(editor);
       });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(T::GetGlobalSettingString("EMail", "ComeTemplate", ""), "0007");
  EXPECT_EQ(Stored(7), (Texts{kFinished, "お大事になさってください", "$_PNAME 様の治療が終わりました。"}));
}

TEST_F(MailDialogs, NewTemplateIsNamedCheckedAndHandedToTheCaller) {
  int number = -5;
  Work([&] { EXPECT_EQ(CKovaComDlg::OpenMailTemplateSetting(nullptr, -1, &number), 1); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         EXPECT_EQ(Shown(Item(editor, Editor::kName)), "新しいテンプレート");
         PutIn(editor, Editor::kName, "来院のお知らせ");
         Press(editor, IDOK);
         HWND refused = MessageBoxWindow("指定されたテンプレート名は既に存在しています。");
         Photograph(refused, "template_name_taken");
         PressKey(FocusOf(refused), VK_RETURN);
         WaitFor("the old name", [&] { return Shown(Item(editor, Editor::kName)) == "新しいテンプレート"; });
         PutIn(editor, Editor::kName, "検診のご案内");
         PutIn(editor, Editor::kBody, "$_PNAM 様");
         Press(editor, IDOK);
         HWND unknown = MessageBoxWindow("次の語は置き換えられません。");
         Press(unknown, IDNO);
         WaitFor("the editor again", [&] { return IsWindowEnabled(editor); });
         SetWindowTextW(Item(editor, Editor::kBody),
                        L"\x8FBB\xD842\xDFB7 様");  // the second one is not in code page 932
         Press(editor, IDOK);
         HWND lost = MessageBoxWindow("次の文字は保存できません。");
         PressKey(FocusOf(lost), VK_RETURN);
         WaitFor("the editor again", [&] { return IsWindowEnabled(editor); });
         PutIn(editor, Editor::kBody, "$_PNAME 様\r\n検診の時期です。");
         Press(editor, IDOK);
         WaitUntilClosed(editor);
       });
  EXPECT_EQ(number, 9);
  EXPECT_EQ(Stored(9), (Texts{"検診のご案内", "", "$_PNAME 様\r\n検診の時期です。"}));
  EXPECT_EQ(T::GetNextTemplateNumber(), 10);
}

TEST_F(MailDialogs, WhatIsNotTouchedComesBackAsItWas) {
  // Half a character, a line feed alone, a character that the code page holds twice.
  const std::string odd = "\x83\nA\x87\x90\r\n";
  Put(1, "予約のお知らせ", "\x8f", odd.c_str());
  Work([&] { CKovaComDlg::OpenMailTemplateSetting(nullptr, 0); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         PutIn(editor, Editor::kName, "新しい名前");
         Press(editor, IDOK);
         WaitUntilClosed(editor);
       });
  EXPECT_EQ(Stored(1), (Texts{"新しい名前", "\x8f", odd}));
}

TEST_F(MailDialogs, CancelAndEscapeStoreNothingAndDeletionAsks) {
  Work([&] { EXPECT_EQ(CKovaComDlg::OpenMailTemplateSetting(nullptr, 0), 0); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         PutIn(editor, Editor::kBody, "書きかけ");
         Press(editor, Editor::kDelete);
         Press(MessageBoxWindow("表示中のテンプレートを削除してもよろしいですか？"), IDNO);
         WaitFor("the editor again", [&] { return IsWindowEnabled(editor); });
         EXPECT_EQ(Shown(Item(editor, Editor::kBody)), "書きかけ");
         PressKey(Item(editor, Editor::kSubject), VK_ESCAPE);
         WaitUntilClosed(editor);
       });
  EXPECT_EQ(Stored(1)[1], "【ご予約】$_REDATE");
  Work([&] { EXPECT_EQ(CKovaComDlg::OpenMailTemplateSetting(nullptr, 0), 0); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         Press(editor, Editor::kDelete);
         Press(MessageBoxWindow("表示中のテンプレートを削除してもよろしいですか？"), IDYES);
         WaitFor("the first of the rest",
                 [&] { return Shown(Item(editor, Editor::kSubject)) == "来院されました"; });
         Press(editor, IDCANCEL);
         WaitUntilClosed(editor);
       });
  EXPECT_EQ(Stored(1), Texts{});
}

TEST_F(MailDialogs, TreeIsReorderedNestedStoredAndChosenFrom) {
  int number = 6;
  Work([&] { EXPECT_EQ(CKovaComDlg::MailTemplateTree(nullptr, &number), 1); },
       [&] {
         HWND dialog = Dialog(kTreeTitle);
         HWND tree = Item(dialog, Tree::kTree);
         const Texts flat{"テンプレート", "  予約のお知らせ", "  来院のお知らせ",
                          std::string("  ") + kFinished};
         EXPECT_EQ(TreeItems(tree), flat);
         EXPECT_EQ(Faults(dialog), "");
         Press(dialog, Tree::kUp);
         const Texts raised{"テンプレート", "  来院のお知らせ", "  予約のお知らせ",
                            std::string("  ") + kFinished};
         WaitFor("the move up", [&] { return TreeItems(tree) == raised; });
         PressKey(tree, VK_DOWN, true);
         WaitFor("the move down", [&] { return TreeItems(tree) == flat; });
         PressKey(tree, VK_RIGHT, true);
         const Texts nested{"テンプレート", "  予約のお知らせ", "    来院のお知らせ",
                            std::string("  ") + kFinished};
         WaitFor("the nesting", [&] { return TreeItems(tree) == nested; });
         SelectInTree(tree, kFinished);
         Photograph(dialog, "template_tree");
         Press(dialog, IDOK);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(number, 7);
  std::string file;
  (void)kova::os::RealFiles().Read(practice_.Folder() + "templates\\$mt.Tree", 1000, file);
  EXPECT_EQ(file, "0001\r\n0006-0001\r\n0007\r\n");
}

TEST_F(MailDialogs, DraggingDropsBetweenAndUnder) {
  Work([&] { CKovaComDlg::MailTemplateTree(nullptr, nullptr); },
       [&] {
         HWND dialog = Dialog(kTreeTitle);
         HWND tree = Item(dialog, Tree::kTree);
         const auto at = [&](int row, int part) {  // of a row's height, in eighths
           const int height = static_cast<int>(SendMessageW(tree, TVM_GETITEMHEIGHT, 0, 0));
           POINT point{60, row * height + part * height / 8};
           MapWindowPoints(tree, dialog, &point, 1);
           return MAKELPARAM(point.x, point.y);
         };
         const auto drag = [&](const char* caption, int row, int part) {
           SelectInTree(tree, caption);
           NMTREEVIEWW notice{};
           notice.hdr = {tree, Tree::kTree, TVN_BEGINDRAGW};
           notice.itemNew.hItem = TreeView_GetSelection(tree);
           SendMessageW(dialog, WM_NOTIFY, Tree::kTree, reinterpret_cast<LPARAM>(&notice));
           SendMessageW(dialog, WM_MOUSEMOVE, MK_LBUTTON, at(row, part));
           SendMessageW(dialog, WM_LBUTTONUP, 0, at(row, part));
         };
         drag(kFinished, 1, 0);  // before the first
         const Texts before{"テンプレート", std::string("  ") + kFinished, "  予約のお知らせ",
                            "  来院のお知らせ"};
         EXPECT_EQ(TreeItems(tree), before);
         drag("来院のお知らせ", 1, 4);  // onto it
         const Texts under{"テンプレート", std::string("  ") + kFinished, "    来院のお知らせ",
                           "  予約のお知らせ"};
         EXPECT_EQ(TreeItems(tree), under);
         drag(kFinished, 2, 4);  // onto what hangs under it: nothing happens
         EXPECT_EQ(TreeItems(tree), under);
         Press(dialog, IDCANCEL);
         WaitUntilClosed(dialog);
       });
}

TEST_F(MailDialogs, EditorChoosesFromTheTree) {
  Work([&] { EXPECT_EQ(CKovaComDlg::OpenMailTemplateSetting(nullptr, 0), 1); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         Press(editor, Editor::kTree);
         HWND tree = Dialog(kTreeTitle);
         SelectInTree(Item(tree, Tree::kTree), "来院のお知らせ");
         Press(tree, IDOK);
         WaitUntilClosed(tree);
         WaitFor("the chosen one", [&] { return Shown(Item(editor, Editor::kSubject)) == "来院されました"; });
         EXPECT_EQ(Shown(Item(editor, Editor::kName)), "来院のお知らせ");
         Press(editor, IDOK);
         WaitUntilClosed(editor);
       });
  EXPECT_EQ(T::GetGlobalSettingString("EMail", "ReservationTemplate", ""), "0006");
}

TEST_F(MailDialogs, PreviewFillsTheUnsavedTextForAChosenReservation) {
  WriteReservation();
  Work([&] { CKovaComDlg::OpenMailTemplateSetting(nullptr, 0, nullptr, &practice_.Database()); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         PutIn(editor, Editor::kBody, "$_PNAME 様 $_RETIME");
         Press(editor, Editor::kPreview);
         HWND preview = Dialog("メールのプレビュー");
         WaitFor("the empty day", [&] {
           return Shown(Item(preview, MailPreviewDialog::kBody)) == "この日には予約がありません。";
         });
         Press(preview, MailPreviewDialog::kDayAfter);
         WaitFor("the mail",
                 [&] { return Shown(Item(preview, MailPreviewDialog::kBody)) == "山田　表太郎 様 09:30"; });
         EXPECT_EQ(Shown(Item(preview, MailPreviewDialog::kTo)), "yamada@example.jp");
         EXPECT_EQ(ListCell(Item(preview, MailPreviewDialog::kReservations), 0, 2), "山田　表太郎");
         EXPECT_EQ(Faults(preview), "");
         Photograph(preview, "mail_preview");
         Press(preview, IDCANCEL);
         WaitUntilClosed(preview);
         Press(editor, IDCANCEL);
         WaitUntilClosed(editor);
       });
}

// A host's window gets its life back, and a dialog follows its size.
TEST_F(MailDialogs, IsModalOverItsParentAndCanBeResized) {
  CWnd host;
  host.m_hWnd = CreateWindowExW(0, L"STATIC", L"受付", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 900, 600,
                                nullptr, nullptr, nullptr, nullptr);
  Work([&] { CKovaComDlg::OpenMailTemplateSetting(&host, 0); },
       [&] {
         HWND editor = Dialog(kEditorTitle);
         EXPECT_FALSE(IsWindowEnabled(host.m_hWnd));
         const auto width = [](HWND shown) {
           RECT place{};
           GetWindowRect(shown, &place);
           return static_cast<int>(place.right - place.left);
         };
         const int before = width(Item(editor, Editor::kBody));
         SetWindowPos(editor, nullptr, 0, 0, width(editor) + 200, 1200, SWP_NOZORDER);
         WaitFor("the body to grow", [&] { return width(Item(editor, Editor::kBody)) > before + 100; });
         EXPECT_EQ(Faults(editor), "");
         SetWindowPos(editor, nullptr, 0, 0, 10, 10, SWP_NOZORDER);
         EXPECT_EQ(Faults(editor), "");
         Press(editor, IDCANCEL);
         WaitUntilClosed(editor);
       });
  EXPECT_TRUE(IsWindowEnabled(host.m_hWnd));
  DestroyWindow(host.m_hWnd);
}

}  // namespace
