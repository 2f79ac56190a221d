// The dialogs in which a practice and a workstation are set up, in real windows.

#include <winsock2.h>
#include <afxwin.h>
#include <gtest/gtest.h>

#include <string>

#include "entry/kova_com_dlg.h"
#include "entry/kova_sub_tools.h"
#include "hosts/person/window_driver.h"
#include "mail/win32/mail_settings_dialog.h"
#include "platform/os/application_profile.h"
#include "platform/os/clock.h"
#include "platform/os/error_text.h"
#include "platform/recordstore/administration.h"
#include "practice/win32/server_password_dlg.h"
#include "practice/win32/setting_dlg.h"
#include "tests/windows/window_practice.h"

namespace {

using namespace kova::person;
using kova::testing::WindowPractice;
using kova::testing::Work;
using Folder = kova::practice::CSettingDlg;
using Mail = kova::mail::MailSettingsDialog;
using T = CKovaSubTools;

constexpr const char* kFolderTitle = "データベース接続先設定";
constexpr const char* kMailTitle = "メール設定";

/// Says `greeting` to the first who connects, and notes what that one sends.
class FakeServer {
 public:
  explicit FakeServer(std::string greeting) : greeting_(std::move(greeting)) {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    listening_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof address;
    bind(listening_, reinterpret_cast<sockaddr*>(&address), size);
    listen(listening_, 1);
    getsockname(listening_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
    thread_ = CreateThread(nullptr, 0, &FakeServer::Serve, this, 0, nullptr);
  }
  ~FakeServer() {
    closesocket(listening_);
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
    WSACleanup();
  }
  std::string Name() const { return "127.0.0.1:" + std::to_string(port_); }
  /// What was sent to it, once the other side has closed.
  std::string Received() {
    WaitForSingleObject(thread_, 5000);
    return received_;
  }

 private:
  static DWORD WINAPI Serve(void* self) {
    auto& server = *static_cast<FakeServer*>(self);
    const SOCKET client = accept(server.listening_, nullptr, nullptr);
    if (client == INVALID_SOCKET) return 0;
    send(client, server.greeting_.data(), static_cast<int>(server.greeting_.size()), 0);
    char bytes[100];
    for (int got; (got = recv(client, bytes, sizeof bytes, 0)) > 0;)
      server.received_.append(bytes, static_cast<std::size_t>(got));
    closesocket(client);
    return 0;
  }

  std::string greeting_;
  std::string received_;
  SOCKET listening_ = INVALID_SOCKET;
  int port_ = 0;
  HANDLE thread_ = nullptr;
};

class SettingsWindows : public testing::Test {
 protected:
  std::string StoredFolder() {
    const kova::os::IniApplicationProfile profile(kova::os::RealFiles(), practice_.Folder() + "app.ini");
    return profile.GetString("GLOBAL", "DATABASE", "");
  }
  static std::string Stored(const char* key) {
    return T::GetGlobalSettingString("EMail", key, "").GetString();
  }
  static void Dismiss(HWND dialog, HWND message) {
    PressKey(FocusOf(message), VK_RETURN);
    WaitUntilClosed(message);
    WaitFor("the dialog again", [&] { return IsWindowEnabled(dialog); });
  }

  WindowPractice practice_{"settings_windows"};
};

TEST_F(SettingsWindows, FolderIsTestedStoredAndOpened) {
  const std::string second = practice_.Folder() + "二つ目の表";
  ASSERT_EQ(KovaCreateDatabase(second.c_str()), 0);
  (void)kova::os::RealFiles().MakeFolder(practice_.Folder() + "空");
  int result = 0;
  Work([&] { result = CKovaComDlg::OpenSettingDBPath(&practice_.Database(), nullptr); },
       [&] {
         HWND dialog = Dialog(kFolderTitle);
         EXPECT_EQ(Shown(Item(dialog, Folder::kFolder)), practice_.Folder());
         EXPECT_EQ(Faults(dialog), "");
         Press(dialog, Folder::kTest);
         HWND connected = MessageBoxWindow("データベースへの接続が成功しました。");
         Photograph(dialog, "database_folder");
         Dismiss(dialog, connected);
         PutIn(dialog, Folder::kFolder, practice_.Folder() + "空");
         Press(dialog, Folder::kTest);
         HWND refused = MessageBoxWindow("指定されたデータベースフォルダに接続できませんでした。");
         Photograph(refused, "database_folder_refused");
         Dismiss(dialog, refused);
         EXPECT_EQ(StoredFolder(), practice_.Folder() + "空\\");
         PutIn(dialog, Folder::kFolder, "\\\\server\\share\\表");
         SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(dialog, Folder::kTest)), TRUE);
         WaitFor("the note", [&] {
           return Shown(Item(dialog, Folder::kNote)).find("ネットワーク上のフォルダです。") !=
                  std::string::npos;
         });
         EXPECT_EQ(Faults(dialog), "");
         Photograph(dialog, "database_folder_network");
         PutIn(dialog, Folder::kFolder, second);
         Press(dialog, IDOK);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(StoredFolder(), second + "\\");
  EXPECT_TRUE(practice_.Database().IsOpen());
}

TEST_F(SettingsWindows, EmptyDatabaseIsMadeOnceAndOnlyWhenSaidYes) {
  const std::string made = practice_.Folder() + "新しい表";
  int result = 0;
  Work([&] { result = CKovaComDlg::OpenSettingDBPath(nullptr, nullptr); },
       [&] {
         HWND dialog = Dialog(kFolderTitle);
         Press(dialog, Folder::kMakeEmpty);
         Dismiss(dialog, MessageBoxWindow("指定されたフォルダには既にデータベースが存在します。"));
         PutIn(dialog, Folder::kFolder, practice_.Folder() + "app.ini");
         Press(dialog, IDOK);  // a file: the system's own words
         Dismiss(dialog, MessageBoxWindow(kova::os::SystemErrorText(kova::os::FileOutcome::kNotThere)));
         PutIn(dialog, Folder::kFolder, made);
         Press(dialog, Folder::kMakeEmpty);
         // Enter means No.
         Dismiss(dialog, MessageBoxWindow("空のデータベースを作成してもよろしいですか。"));
         EXPECT_EQ(GetFileAttributesW((practice_.Native() / L"\x65B0\x3057\x3044\x8868").c_str()),
                   INVALID_FILE_ATTRIBUTES);
         Press(dialog, Folder::kMakeEmpty);
         HWND question = MessageBoxWindow("空のデータベースを作成してもよろしいですか。");
         Press(question, IDYES);
         WaitFor("the new database",
                 [&] { return Shown(Item(dialog, Folder::kNote)) == "空のデータベースを作成しました。"; });
         Photograph(dialog, "database_folder_made");
         WaitFor("the dialog again", [&] { return IsWindowEnabled(dialog); });
         Press(dialog, Folder::kBrowse);
         HWND browser = MessageBoxWindow("データベースフォルダを選択して下さい");
         Press(browser, IDCANCEL);
         WaitFor("the dialog again", [&] { return IsWindowEnabled(dialog); });
         PressKey(FocusOf(dialog), VK_ESCAPE);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(result, IDCANCEL);
  EXPECT_EQ(StoredFolder(), practice_.Folder());
  CKovaDBSys db;
  EXPECT_EQ(db.OpenDB(made.c_str()), 0);
}

TEST_F(SettingsWindows, AServersPasswordIsAskedForOnceAndItsDriverIsNamed) {
  const std::string folder = practice_.Folder() + "サーバー";
  (void)kova::os::RealFiles().MakeFolder(folder);
  (void)kova::os::RealFiles().Create(folder + "\\INDEXCONTROL.BTR", "");
  // The password is kept for this user: no other run has this account.
  (void)kova::os::RealFiles().Create(
      folder + "\\kova.server", "[Server]\r\nKind=PostgreSQL\r\nHosts=127.0.0.1:1, desk2.example.jp\r\nDatabase=kova\r\n"
                                "Driver=No Such Driver\r\nAccount=desk" + std::to_string(kova::os::UtcMilliseconds()) + "\r\n");
  int result = 0;
  Work([&] { result = CKovaComDlg::OpenSettingDBPath(&practice_.Database(), nullptr); },
       [&] {
         HWND dialog = Dialog(kFolderTitle);
         PutIn(dialog, Folder::kFolder, folder);
         Press(dialog, Folder::kTest);
         HWND password = Dialog("データベースサーバーのパスワード");
         EXPECT_EQ(Faults(password), "");
         PutIn(password, kova::practice::ServerPasswordDlg::kPassword, "秘密");
         Photograph(password, "server_password");
         Press(password, IDOK);
         HWND refused = MessageBoxWindow("No Such Driver");
         Photograph(refused, "server_refused");
         Dismiss(dialog, refused);
         EXPECT_NE(Shown(Item(dialog, Folder::kNote)).find("PostgreSQL 127.0.0.1:1, desk2.example.jp"), std::string::npos);
         Photograph(dialog, "database_folder_server");
         Press(dialog, Folder::kTest);  // the password is there now
         Dismiss(dialog, MessageBoxWindow("No Such Driver"));
         PressKey(FocusOf(dialog), VK_ESCAPE);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(result, IDCANCEL);
  EXPECT_FALSE(practice_.Database().IsOpen());
}

TEST_F(SettingsWindows, MailSettingsAreShownAndStored) {
  T::SetGlobalSettingString("EMail", "Stmp", "smtp.example.jp");
  T::SetGlobalSettingString("EMail", "Password", "himitsu");
  T::SetGlobalSettingString("EMail", "Sender", "\x95\x5c\x8e");  // half a character at its end
  T::SetGlobalSettingString("EMail", "ConnectionName", "昔の接続");
  int result = 0;
  Work([&] { result = CKovaComDlg::OpenMailSetting(nullptr); },
       [&] {
         HWND dialog = Dialog(kMailTitle);
         EXPECT_EQ(Faults(dialog), "");
         EXPECT_EQ(Shown(Item(dialog, Mail::kServer)), "smtp.example.jp");
         EXPECT_EQ(Shown(Item(dialog, Mail::kEntry)), "昔の接続");
         EXPECT_FALSE(IsWindowEnabled(Item(dialog, Mail::kEntry)));
         EXPECT_NE(SendMessageW(Item(dialog, Mail::kPassword), EM_GETPASSWORDCHAR, 0, 0), 0);
         Photograph(dialog, "mail_settings");
         Press(dialog, Mail::kShowPasswords);
         WaitFor("the password",
                 [&] { return SendMessageW(Item(dialog, Mail::kPassword), EM_GETPASSWORDCHAR, 0, 0) == 0; });
         Press(dialog, Mail::kDialUp);
         WaitFor("the entries", [&] { return IsWindowEnabled(Item(dialog, Mail::kEntry)); });
         Press(dialog, Mail::kAuthenticates);
         WaitFor("the account", [&] { return IsWindowEnabled(Item(dialog, Mail::kSmtpUserId)); });
         PutIn(dialog, Mail::kSmtpUserId, "表歯科");
         PutIn(dialog, Mail::kSmtpPassword, " 空白 ");
         WaitFor("the last control",
                 [&] { return GetUpdateRect(Item(dialog, IDCANCEL), nullptr, FALSE) == FALSE; });
         Photograph(dialog, "mail_settings_shown");
         Press(dialog, IDOK);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(Stored("Stmp"), "smtp.example.jp");
  EXPECT_EQ(Stored("Password"), "himitsu");
  EXPECT_EQ(Stored("Sender"), "\x95\x5c\x8e");
  EXPECT_EQ(Stored("Connection"), "1");
  EXPECT_EQ(Stored("ConnectionName"), "昔の接続");
  EXPECT_EQ(Stored("SmtpAttach"), "1");
  EXPECT_EQ(Stored("SmtpUserID"), "表歯科");
  EXPECT_EQ(Stored("SmtpPassword"), " 空白 ");
}

TEST_F(SettingsWindows, ServerIsAskedAndToldNothing) {
  FakeServer ready("220 mail.example.jp ESMTP\r\n");
  FakeServer silent("");
  Work([&] { EXPECT_EQ(CKovaComDlg::OpenMailSetting(nullptr), 0); },
       [&] {
         HWND dialog = Dialog(kMailTitle);
         Press(dialog, Mail::kTest);
         Dismiss(dialog, MessageBoxWindow("SMTPサーバーを「ホスト名」"));
         PutIn(dialog, Mail::kServer, ready.Name());
         Press(dialog, Mail::kTest);
         HWND answer = MessageBoxWindow("220 mail.example.jp ESMTP");
         Photograph(answer, "mail_server_answer");
         Dismiss(dialog, answer);
         EXPECT_EQ(ready.Received(), "");
         PutIn(dialog, Mail::kServer, silent.Name());
         Press(dialog, Mail::kTest);
         HWND waiting = Dialog("接続テスト");
         const ULONGLONG pressed = GetTickCount64();
         PressKey(FocusOf(waiting), VK_ESCAPE);
         WaitUntilClosed(waiting);
         EXPECT_LT(GetTickCount64() - pressed, 3000u);
         WaitFor("the dialog again", [&] { return IsWindowEnabled(dialog); });
         Press(dialog, IDCANCEL);
         WaitUntilClosed(dialog);
       });
  EXPECT_EQ(Stored("Stmp"), "");
}

TEST_F(SettingsWindows, WhatCannotBeStoredStaysInTheDialog) {
  T::SetGlobalSettingString("EMail", "Stmp", "old");
  const std::wstring name = (practice_.Native() / L"GLOBALSETTING.ini").wstring();
  SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_READONLY);
  Work([&] { EXPECT_EQ(CKovaComDlg::OpenMailSetting(nullptr), 0); },
       [&] {
         HWND dialog = Dialog(kMailTitle);
         PutIn(dialog, Mail::kServer, "new");
         Press(dialog, IDOK);
         Dismiss(dialog, MessageBoxWindow("設定を保存できません。"));
         EXPECT_EQ(Shown(Item(dialog, Mail::kServer)), "new");
         Press(dialog, IDCANCEL);
         WaitUntilClosed(dialog);
       });
  SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(Stored("Stmp"), "old");
}

}  // namespace
