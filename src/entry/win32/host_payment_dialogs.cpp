#include "entry/host_payment_dialogs.h"

#include <windows.h>

#include "cashless/win32/cashless_dlg.h"
#include "cashless/win32/cashless_or_cash_dlg.h"
#include "cashless/win32/late_bound_control.h"
#include "entry/payment_session.h"
#include "entry/win32/host_window.h"

namespace kova::entry {
int HostPaymentDialogs::Choose(std::int32_t amount, unsigned, int flag) {
  cashless::CCashlessOrCashDlg dialog(amount, flag != 0);
  return static_cast<int>(dialog.RunModal(HandleOf(parent_)));
}

bool HostPaymentDialogs::PayByBridge(std::int32_t amount, std::string_view text, std::string& result) {
  const PaymentSession session;
  cashless::CCashlessNoCatDlg dialog(session.place, amount, text);
  return dialog.Pay(HandleOf(parent_), result);
}

bool HostPaymentDialogs::PayByControl(std::int32_t amount, std::string_view text, std::string& result) {
  const PaymentSession session;
  cashless::LateBoundControl control(cashless::ControlName(session.settings.Open(), type_));
  cashless::CCashlessDlg dialog(session.place, control, amount, text);
  return dialog.Pay(HandleOf(parent_), result);
}

}  // namespace kova::entry
