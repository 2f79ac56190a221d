#pragma once

// "データベース接続先設定": which folder holds the practice's database.

#include <string>

#include "practice/database_folder.h"
#include "window/dialog.h"

namespace kova::practice {

class CSettingDlg final : public window::Dialog {
 public:
  enum Id { kFolderLabel = 100, kFolder, kBrowse, kTest, kMakeEmpty, kNote };

  struct Desk {
    os::Files& files;
    os::ApplicationProfile& profile;
    CKovaDBSys* db;  // to be opened anew; null for none
    std::string programFolder;
  };

  /// All must outlive the dialog.
  explicit CSettingDlg(Desk desk);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  void OnOk() override;

  void Browse();
  /// True when the folder was taken; else it has been said why not.
  bool Apply();
  FolderUse Use();
  /// Asks for the password of the folder's server and keeps it; false when the user gave up.
  bool AskPassword();
  /// The server of the folder; empty when its records lie in it.
  std::string ServerText() const;
  std::string WhyNot(FolderUse use) const;
  void MakeEmpty();
  /// Says of a folder on another machine what that means.
  void ShowNote();

  Desk desk_;
  std::string dbFolder_;
};

}  // namespace kova::practice
