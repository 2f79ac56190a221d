#pragma once

#include <cstdint>

#include "window/dialog.h"

namespace kova::cashless {

/// "お支払い方法": cash or cashless. RunModal gives kChoseCash, kChoseCashless or IDCANCEL.
class CCashlessOrCashDlg final : public window::Dialog {
 public:
  enum Id { kAmountLabel = 110, kAmount };  // beside the two end codes, which are the buttons

  /// `withChanger`: cash goes through the cash changer, and its button says so.
  CCashlessOrCashDlg(std::int32_t amount, bool withChanger);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnCommand(int control, int notification) override;
  void OnOk() override {}

  std::int32_t amount_;
  bool withChanger_;
};

}  // namespace kova::cashless
