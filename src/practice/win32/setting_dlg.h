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
  void MakeEmpty();
  /// Says of a folder on another machine what that means.
  void ShowNote();

  Desk desk_;
  std::string dbFolder_;
};

}  // namespace kova::practice
