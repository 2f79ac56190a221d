#pragma once

// "住所検索": chooses one of several addresses, or postal codes.

#include <string>

#include "postal/address_choice.h"
#include "window/dialog.h"
#include "window/virtual_list.h"

namespace kova::postal {

class CSelectAddressDlg final : public window::Dialog {
 public:
  enum Id {
    kTextLabel = 100,
    kText,
    kListLabel,
    kList,
    kCount,
    kAge,
  };

  /// @param listAge  how old the list is that the candidates are from, as it is shown
  CSelectAddressDlg(AddressChoice choice, std::string listAge);

  /// Runs it; the chosen answer, empty when none was chosen.
  std::string Run(HWND parent);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  LRESULT OnNotify(const NMHDR& header) override;
  bool OnKey(HWND focus, WPARAM key, bool alt) override;
  void OnOk() override;

  void Narrow();
  void ShowRows();
  std::string CellText(int row, int column) const;

  AddressChoice choice_;
  std::string listAge_;
  window::VirtualList list_;
  std::string chosen_;
};

}  // namespace kova::postal
