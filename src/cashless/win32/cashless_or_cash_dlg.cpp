#include "cashless/win32/cashless_or_cash_dlg.h"

#include "cashless/cashless_payment.h"
#include "cashless/payment_entry.h"

namespace kova::cashless {

using window::Box;
using window::Column;
using window::Row;
using window::Space;

CCashlessOrCashDlg::CCashlessOrCashDlg(std::int32_t amount, bool withChanger)
    : Dialog("お支払い方法", {400, 0}), amount_(amount), withChanger_(withChanger) {}

void CCashlessOrCashDlg::AddControls() {
  AddLabel(kAmountLabel, "お支払い金額");
  AddLabel(kAmount, AmountText(amount_), SS_RIGHT);
  UseLook(kAmount, {.textPercent = 300, .isBold = true});
  AddButton(kChoseCash, withChanger_ ? "現金 (つり銭機)(&1)" : "現金(&1)");
  AddButton(kChoseCashless, "キャッシュレス(&2)");
  for (const int button : {kChoseCash, kChoseCashless}) UseLook(button, {.textPercent = 140});
  AddButton(IDCANCEL, "キャンセル");
}

Box CCashlessOrCashDlg::Arrange() const {
  const int gap = Dip(12);
  return Column(gap, {Row(gap, {Natural(kAmountLabel), AtLeast(kAmount, {260, 0}).Stretch()}),
                      Row(gap, {AtLeast(kChoseCash, {200, 64}).Stretch(),
                                AtLeast(kChoseCashless, {200, 64}).Stretch()}),
                      Row(0, {Space(0, 0).Stretch(), AtLeast(IDCANCEL, {90, 0})})})
      .Margin(Dip(16));
}

void CCashlessOrCashDlg::OnCommand(int control, int notification) {
  if (notification == BN_CLICKED && (control == kChoseCash || control == kChoseCashless)) Close(control);
}

}  // namespace kova::cashless
