#pragma once

// "メール設定": how the practice sends its mail.

#include <functional>

#include "mail/mail_settings.h"
#include "platform/os/tcp.h"
#include "window/dialog.h"

namespace kova::mail {

class MailSettingsDialog final : public window::Dialog {
 public:
  enum Id {
    kServerLabel = 100,
    kServer,
    kTest,
    kAddressLabel,
    kAddress,
    kSenderLabel,
    kSender,
    kUserIdLabel,
    kUserId,
    kPasswordLabel,
    kPassword,
    kConnectionFrame,
    kLine,
    kDialUp,
    kEntryLabel,
    kEntry,
    kSmtpFrame,
    kAuthenticates,
    kSmtpUserIdLabel,
    kSmtpUserId,
    kSmtpPasswordLabel,
    kSmtpPassword,
    kShowPasswords,
  };

  /// `store` and `tcp` must outlive the dialog.
  MailSettingsDialog(foundation::SettingsStore& store, os::Tcp& tcp);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  void OnOk() override;

  void FillEntries();
  void EnableParts();
  void ShowPasswords(bool shown);
  void TestServer();
  bool IsChecked(int control) const;
  void Check(int control, bool checked);
  bool Take(MailSettings& settings);

  foundation::SettingsStore& store_;
  os::Tcp& tcp_;
  bool passwordsShown_ = false;
};

}  // namespace kova::mail
