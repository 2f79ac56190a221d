#pragma once

// Asks for the password of the account that this workstation uses a database server with.

#include <string>

#include "window/dialog.h"

namespace kova::practice {

class ServerPasswordDlg final : public window::Dialog {
 public:
  enum Id { kServer = 100, kPasswordLabel, kPassword };

  /// `server`: the server as it is shown.
  explicit ServerPasswordDlg(std::string server);
  const std::string& Password() const { return password_; }

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnOk() override;

  std::string server_;
  std::string password_;
};

}  // namespace kova::practice
