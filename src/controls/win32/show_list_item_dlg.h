#pragma once

// "表示項目の設定" (dialog 8025): which columns a list shows.

#include <string>
#include <vector>

#include "controls/list_columns.h"
#include "controls/win32/check_list.h"
#include "window/dialog.h"

namespace kova::controls {

/// A column of the list that is set up.
struct NamedColumn {
  int column = 0;
  std::string name;  // code page 932
};

class CShowListItemDlg final : public window::Dialog {
 public:
  enum Id { kItemsLabel = 100, kItems, kAll, kNone };

  /// @param columns  in the order in which the list shows them
  CShowListItemDlg(os::ApplicationProfile& profile, std::string_view section,
                   std::vector<NamedColumn> columns);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  void OnOk() override;

  os::ApplicationProfile& profile_;
  std::string section_;
  std::vector<NamedColumn> columns_;
  CheckList list_;
};

}  // namespace kova::controls
