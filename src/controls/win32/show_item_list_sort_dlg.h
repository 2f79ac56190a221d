#pragma once

// "表示項目の設定" (dialog 8079): which columns a list shows and in which order, and the options of the
// patient list.

#include <optional>
#include <string>
#include <vector>

#include "controls/list_columns.h"
#include "controls/win32/check_list.h"
#include "window/dialog.h"

namespace kova::controls {

class CShowItemListSortDlg final : public window::Dialog {
 public:
  enum Id {
    kItemsLabel = 100,
    kItems,
    kUp,
    kDown,
    kReset,
    kAll,
    kNone,
    kIdNote,
    kHint,
    kOptions,
    kMemoryNote,
    kFirstOption = 120,  // and the next: in the order of kPatientListOptions
  };

  /// @param names  of the columns 0, 1, ...; code page 932
  CShowItemListSortDlg(os::ApplicationProfile& profile, std::string_view section,
                       std::vector<std::string> names);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  LRESULT OnNotify(const NMHDR& header) override;
  bool OnKey(HWND focus, WPARAM key, bool alt) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  void OnOk() override;

  window::Box ArrangeOptions() const;
  void ShowRows();
  void TakeChecks();
  void Move(int from, int to);
  void MoveSelected(int step);
  void Reset();
  void ShowChoices(const PatientListChoices& choices);
  PatientListChoices Choices() const;
  void BeginDrag(int row);
  void DragTo(POINT onScreen);
  void EndDrag(bool keep);

  struct Drag {
    int row = 0;                    // where the dragged row is by now
    std::vector<ColumnRow> before;  // the rows when it began
  };

  os::ApplicationProfile& profile_;
  std::string section_;
  std::vector<std::string> names_;
  std::vector<ColumnRow> rows_;
  CheckList list_;
  std::optional<Drag> drag_;
};

}  // namespace kova::controls
