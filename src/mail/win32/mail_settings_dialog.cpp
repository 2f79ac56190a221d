#include "mail/win32/mail_settings_dialog.h"

#include <string>
#include <string_view>

#include "mail/server_check.h"
#include "platform/os/dial_up.h"
#include "platform/os/error_text.h"
#include "window/message_prompts.h"
#include "window/wide_text.h"
#include "window/work_dialog.h"

namespace kova::mail {

using window::Box;
using window::Column;
using window::Grid;
using window::MessagePrompts;
using window::Row;
using window::Space;

namespace {

using Id = MailSettingsDialog::Id;

struct Field {
  int control;
  std::string MailSettings::*text;
};
constexpr Field kFields[] = {
    {Id::kServer, &MailSettings::server},
    {Id::kAddress, &MailSettings::address},
    {Id::kSender, &MailSettings::sender},
    {Id::kUserId, &MailSettings::userId},
    {Id::kPassword, &MailSettings::password},
    {Id::kEntry, &MailSettings::connectionName},
    {Id::kSmtpUserId, &MailSettings::authenticationUserId},
    {Id::kSmtpPassword, &MailSettings::authenticationPassword},
};

constexpr wchar_t kHidden = L'\x25CF';

}  // namespace

MailSettingsDialog::MailSettingsDialog(foundation::SettingsStore& store, os::Tcp& tcp)
    : Dialog("メール設定", {520, 0}), store_(store), tcp_(tcp) {}

void MailSettingsDialog::AddControls() {
  AddLabel(kServerLabel, "SMTPサーバー(&M)");
  AddEdit(kServer);
  AddButton(kTest, "接続テスト(&T)");
  AddLabel(kAddressLabel, "送信メール・アドレス(&A)");
  AddEdit(kAddress);
  AddLabel(kSenderLabel, "送信者情報(&N)");
  AddEdit(kSender);
  AddLabel(kUserIdLabel, "ユーザID(&U)");
  AddEdit(kUserId);
  AddLabel(kPasswordLabel, "パスワード(&P)");
  AddEdit(kPassword, ES_PASSWORD);
  AddFrame(kConnectionFrame, "接続方法");
  AddChoiceButton(kLine, "専用回線(LAN)(&L)", true);
  AddChoiceButton(kDialUp, "ダイヤルアップ接続(&D)", false);
  for (const int choice : {kLine, kDialUp})  // round ones, as they stand among fields
    SetWindowLongPtrW(Item(choice), GWL_STYLE, GetWindowLongPtrW(Item(choice), GWL_STYLE) & ~BS_PUSHLIKE);
  AddLabel(kEntryLabel, "接続先(&C)", WS_GROUP);
  AddComboBox(kEntry, CBS_DROPDOWN);
  AddFrame(kSmtpFrame, "SMTP認証設定");
  AddCheckBox(kAuthenticates, "送信時にSMTP認証を行う(&S)");
  AddLabel(kSmtpUserIdLabel, "ユーザID(&I)");
  AddEdit(kSmtpUserId);
  AddLabel(kSmtpPasswordLabel, "パスワード(&W)");
  AddEdit(kSmtpPassword, ES_PASSWORD);
  AddButton(kShowPasswords, "パスワードを表示(&V)");
  AddOkAndCancel();
  for (const Field& field : kFields)
    SendMessageW(Item(field.control), field.control == kEntry ? CB_LIMITTEXT : EM_SETLIMITTEXT,
                 kLongestMailSetting, 0);
}

Box MailSettingsDialog::Arrange() const {
  const int gap = Dip(8);
  const auto wide = [&](int control) { return Row(0, {AtLeast(control, {260, 0}).Stretch()}); };
  Box account =
      Grid(gap, gap,
           {{Natural(kServerLabel), Row(gap, {AtLeast(kServer, {220, 0}).Stretch(), Natural(kTest)})},
            {Natural(kAddressLabel), wide(kAddress)},
            {Natural(kSenderLabel), wide(kSender)},
            {Natural(kUserIdLabel), wide(kUserId)},
            {Natural(kPasswordLabel), wide(kPassword)}},
           1);
  Box line =
      Column(gap, {Space(0, Dip(8)), Row(gap, {Natural(kLine), Natural(kDialUp), Space(0, 0).Stretch()}),
                   Row(gap, {Natural(kEntryLabel), AtLeast(kEntry, {220, 0}).Stretch()})})
          .Margin(Dip(10))
          .Framed(kConnectionFrame);
  Box smtp = Column(gap, {Space(0, Dip(8)), Row(0, {Natural(kAuthenticates), Space(0, 0).Stretch()}),
                          Grid(gap, gap,
                               {{Natural(kSmtpUserIdLabel), wide(kSmtpUserId)},
                                {Natural(kSmtpPasswordLabel), wide(kSmtpPassword)}},
                               1)})
                 .Margin(Dip(10))
                 .Framed(kSmtpFrame);
  return Column(Dip(10), {std::move(account), std::move(line), std::move(smtp), Space(0, 0).Stretch(),
                          Row(gap, {Natural(kShowPasswords), OkAndCancel().Stretch()})})
      .Margin(Dip(12));
}

void MailSettingsDialog::OnStart() {
  const MailSettings settings = ReadMailSettings(store_.Open());
  FillEntries();
  for (const Field& field : kFields) ShowText(field.control, settings.*field.text);
  const std::wstring entry = window::WindowText(Item(kEntry));
  const LRESULT at = SendMessageW(Item(kEntry), CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                  reinterpret_cast<LPARAM>(entry.c_str()));
  // One that this machine does not have stays as it was stored.
  if (at != CB_ERR && !entry.empty()) SendMessageW(Item(kEntry), CB_SETCURSEL, static_cast<WPARAM>(at), 0);
  Check(settings.connection == 0 ? kLine : kDialUp, true);
  Check(kAuthenticates, settings.authenticates != 0);
  ShowPasswords(false);
  EnableParts();
}

void MailSettingsDialog::FillEntries() {
  for (const std::string& name : os::DialUpEntries())
    SendMessageW(Item(kEntry), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(window::Wide(name).c_str()));
}

void MailSettingsDialog::OnCommand(int control, int notification) {
  if (notification != BN_CLICKED) return;
  if (control == kLine || control == kDialUp || control == kAuthenticates)
    EnableParts();
  else if (control == kShowPasswords)
    ShowPasswords(!passwordsShown_);
  else if (control == kTest)
    TestServer();
}

void MailSettingsDialog::EnableParts() {
  for (const int control : {kEntryLabel, kEntry}) Enable(control, IsChecked(kDialUp));
  for (const int control : {kSmtpUserIdLabel, kSmtpUserId, kSmtpPasswordLabel, kSmtpPassword})
    Enable(control, IsChecked(kAuthenticates));
}

void MailSettingsDialog::ShowPasswords(bool shown) {
  passwordsShown_ = shown;
  for (const int control : {kPassword, kSmtpPassword}) {
    SendMessageW(Item(control), EM_SETPASSWORDCHAR, shown ? 0 : kHidden, 0);
    InvalidateRect(Item(control), nullptr, TRUE);
  }
  SetWindowTextW(Item(kShowPasswords),
                 window::Wide(shown ? "パスワードを隠す(&V)" : "パスワードを表示(&V)").c_str());
}

void MailSettingsDialog::TestServer() {
  std::string server;
  if (!TakeText(kServer, server)) return;
  const auto place = PlaceOfServer(server, IsChecked(kAuthenticates));
  if (!place) {
    Inform("SMTPサーバーを「ホスト名」または「ホスト名:ポート番号」で入れてください。");
    return Focus(kServer);
  }
  ServerAnswer answer;
  window::WorkDialog dialog("接続テスト", window::WorkDialog::Kind::kStoppable);
  const bool isWhole = dialog.Run(
      Handle(), [&](foundation::Progress& progress) { answer = AskServer(tcp_, *place, progress); });
  if (!isWhole) return;
  const std::string text = Describe(*place, answer);
  if (IsReady(answer))
    Inform(text);
  else
    MessagePrompts(Handle()).Fail(text);
}

void MailSettingsDialog::OnOk() {
  MailSettings settings;
  if (!Take(settings)) return;
  const os::FileOutcome outcome = WriteMailSettings(store_, settings);
  if (outcome == os::FileOutcome::kOk) return Close(IDOK);
  MessagePrompts(Handle()).Fail("設定を保存できません。\n" + os::SystemErrorText(outcome));
}

bool MailSettingsDialog::Take(MailSettings& settings) {
  for (const Field& field : kFields) {
    if (!TakeText(field.control, settings.*field.text)) return false;
  }
  settings.connection = IsChecked(kDialUp) ? 1 : 0;
  settings.authenticates = IsChecked(kAuthenticates) ? 1 : 0;
  return true;
}

bool MailSettingsDialog::IsChecked(int control) const {
  return SendMessageW(Item(control), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void MailSettingsDialog::Check(int control, bool checked) {
  SendMessageW(Item(control), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

}  // namespace kova::mail
