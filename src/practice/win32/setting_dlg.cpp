#include "practice/win32/setting_dlg.h"

#include <shlobj.h>

#include <utility>

#include "foundation/string_table.h"
#include "platform/os/drives.h"
#include "platform/os/error_text.h"
#include "platform/recordstore/administration.h"
#include "platform/text932/cp932.h"
#include "platform/toollib/tools.h"
#include "platform/toollib/win32/browse_for_folder.h"
#include "practice/win32/server_password_dlg.h"
#include "window/message_prompts.h"
#include "window/work_dialog.h"

namespace kova::practice {

using foundation::StringTableText;
using os::FileOutcome;
using window::Box;
using window::Column;
using window::MessagePrompts;
using window::Row;
using window::Space;

namespace {

constexpr unsigned kBrowserFlags = BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT;

// docs/database.md says the same at length.
constexpr std::string_view kOnNetwork =
    "ネットワーク上のフォルダです。\n"
    "最初の接続で、データベースは共有用の方式に切り替わり、元に戻りません。\n"
    "そのときは、フォルダのあるパソコンで、データベースを使うプログラムを\n"
    "すべて終了しておいてください。";
constexpr std::string_view kOnServer = "データはデータベースサーバーにあります。\n";
constexpr std::string_view kServerDoesNotAnswer =
    "データベースサーバーに接続できませんでした。\n"
    "サーバーとネットワークを確認してください。";
constexpr std::string_view kOnMachine = "このパソコンのフォルダです。";

FileOutcome ErrorOf(FolderUse use) {
  return use == FolderUse::kNoFolder ? FileOutcome::kNotThere : FileOutcome::kFailed;
}

}  // namespace

CSettingDlg::CSettingDlg(Desk desk) : Dialog("データベース接続先設定", {560, 0}), desk_(std::move(desk)) {}

void CSettingDlg::AddControls() {
  AddLabel(kFolderLabel, "データベースフォルダ(&D)");
  AddEdit(kFolder);
  AddButton(kBrowse, "…(&B)");
  AddLabel(kNote, "", SS_LEFT | SS_NOPREFIX);
  AddButton(kTest, "接続テスト(&T)");
  AddButton(kMakeEmpty, "空のデータベース作成(&E)");
  AddOkAndCancel();
}

Box CSettingDlg::Arrange() const {
  const int gap = Dip(8);
  return Column(Dip(10),
                {Natural(kFolderLabel), Row(gap, {AtLeast(kFolder, {420, 0}).Stretch(), Natural(kBrowse)}),
                 AtLeast(kNote, {520, 80}), Space(0, 0).Stretch(),
                 Row(gap, {Natural(kTest), Natural(kMakeEmpty), OkAndCancel().Stretch()})})
      .Margin(Dip(12));
}

void CSettingDlg::OnStart() {
  dbFolder_ = StoredFolder(desk_.profile);
  ShowText(kFolder, dbFolder_);
  ShowNote();
}

void CSettingDlg::OnCommand(int control, int notification) {
  if (control == kFolder && notification == EN_KILLFOCUS) ShowNote();
  if (notification != BN_CLICKED) return;
  if (control == kBrowse)
    Browse();
  else if (control == kTest && Apply() && desk_.db != nullptr)
    Inform(StringTableText(foundation::kTextConnected));
  else if (control == kMakeEmpty)
    MakeEmpty();
}

void CSettingDlg::Browse() {
  std::string typed;
  if (!TakeText(kFolder, typed)) return;
  CBrowseForFolder browser(Handle(), kBrowserFlags,
                           std::string(StringTableText(foundation::kTextChooseDatabaseFolder)),
                           CTools::LastDelimDel(typed));
  if (!browser.SelectFolder()) return;
  ShowText(kFolder, CTools::LastDelimAdd(browser.GetSelectedFolder()));
  ShowNote();
  Focus(kFolder);
}

bool CSettingDlg::Apply() {
  if (!TakeText(kFolder, dbFolder_)) return false;
  dbFolder_ = CTools::LastDelimAdd(dbFolder_);
  FolderUse use = Use();
  while (use == FolderUse::kNoAccess && AskPassword()) use = Use();
  ShowNote();
  if (use == FolderUse::kDone) return true;
  const MessagePrompts prompts(Handle());
  prompts.Fail(WhyNot(use));
  Focus(kFolder);
  return false;
}

FolderUse CSettingDlg::Use() {
  FolderUse use = FolderUse::kNotConnected;
  window::WorkDialog dialog("データベースへの接続", window::WorkDialog::Kind::kWaiting);
  // A server that does not answer is waited for.
  (void)dialog.Run(Handle(), [&](foundation::Progress& progress) {
    progress.Begin("データベースに接続しています");
    use = UseFolder(desk_.files, desk_.profile, desk_.db, dbFolder_);
  });
  return use;
}

bool CSettingDlg::AskPassword() {
  ServerPasswordDlg dialog(ServerText());
  return dialog.RunModal(Handle()) == IDOK &&
         KovaStoreServerPassword(dbFolder_.c_str(), dialog.Password().c_str()) == 0;
}

std::string CSettingDlg::ServerText() const {
  std::string text;
  return KovaDescribeServer(CTools::LastDelimAdd(dbFolder_).c_str(), text) == static_cast<int>(store::Result::kNoDatabase)
             ? std::string()
             : text;
}

std::string CSettingDlg::WhyNot(FolderUse use) const {
  if (use == FolderUse::kNoFolder || use == FolderUse::kNotStored) return os::SystemErrorText(ErrorOf(use));
  if (ServerText().empty()) return std::string(StringTableText(foundation::kTextCannotConnect));
  // The first lines are for the receptionist, the last for whoever she calls.
  const std::string& problem = desk_.db->GetProblem();
  std::string said(problem.size() * 2, ' ');
  said.resize(text932::FromUtf8Into(problem, said.data(), said.size()));
  return std::string(kServerDoesNotAnswer) + "\n\n" + said;
}

void CSettingDlg::OnOk() {
  if (Apply()) Close(IDOK);
}

void CSettingDlg::MakeEmpty() {
  if (!TakeText(kFolder, dbFolder_)) return;
  dbFolder_ = CTools::LastDelimAdd(dbFolder_);
  MessagePrompts prompts(Handle());
  if (HoldsDatabase(desk_.files, dbFolder_))
    return prompts.Inform("指定されたフォルダには既にデータベースが存在します。");
  if (!prompts.Confirm("指定されたフォルダに空のデータベースを作成してもよろしいですか。")) return;
  FileOutcome outcome = FileOutcome::kFailed;
  window::WorkDialog dialog("空のデータベース作成", window::WorkDialog::Kind::kStoppable);
  const bool isWhole = dialog.Run(Handle(), [&](foundation::Progress& progress) {
    outcome = CopyEmptyDatabase(desk_.files, desk_.programFolder, dbFolder_, progress);
  });
  if (outcome == FileOutcome::kOk)
    ShowText(kNote, "空のデータベースを作成しました。");
  else if (isWhole)
    prompts.Fail(os::SystemErrorText(outcome));
}

void CSettingDlg::ShowNote() {
  std::string folder;
  if (!TakeText(kFolder, folder)) return;
  const bool isThere = desk_.files.Kind(folder) == os::PathKind::kFolder;
  const bool isRemote = os::IsRemoteFolder(folder);
  std::string server;
  if (isThere && KovaDescribeServer(folder.c_str(), server) != static_cast<int>(store::Result::kNoDatabase))
    return ShowText(kNote, std::string(kOnServer) + server);
  ShowText(kNote, isRemote ? kOnNetwork : isThere ? kOnMachine : std::string_view());
}

}  // namespace kova::practice
