#include "practice/win32/server_password_dlg.h"

#include <utility>

namespace kova::practice {

using window::Box;
using window::Column;
using window::Row;
using window::Space;

ServerPasswordDlg::ServerPasswordDlg(std::string server)
    : Dialog("データベースサーバーのパスワード", {480, 0}), server_(std::move(server)) {}

void ServerPasswordDlg::AddControls() {
  AddLabel(kServer, "", SS_LEFT | SS_NOPREFIX);
  AddLabel(kPasswordLabel, "パスワード(&P)");
  AddEdit(kPassword, ES_PASSWORD);
  AddOkAndCancel();
}

Box ServerPasswordDlg::Arrange() const {
  return Column(Dip(10), {AtLeast(kServer, {440, 72}), Row(Dip(8), {Natural(kPasswordLabel), AtLeast(kPassword, {300, 0}).Stretch()}),
                          Space(0, 0).Stretch(), OkAndCancel()})
      .Margin(Dip(12));
}

void ServerPasswordDlg::OnStart() {
  ShowText(kServer, server_ + "\n\nこのパソコンに保存されたパスワードでは接続できません。\nパスワードを入力してください。");
  Focus(kPassword);
}

void ServerPasswordDlg::OnOk() {
  if (TakeText(kPassword, password_)) Close(IDOK);
}

}  // namespace kova::practice
