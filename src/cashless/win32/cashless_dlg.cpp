#include "cashless/win32/cashless_dlg.h"

#include "cashless/control_payment.h"
#include "cashless/exchange.h"

namespace kova::cashless {

CCashlessDlg::CCashlessDlg(const PaymentPlace& place, TerminalControl& control, std::int32_t amount,
                           std::string_view text)
    : PaymentDialog(place, std::make_unique<ControlPayment>(control, &place.journal), amount, text) {}

CCashlessNoCatDlg::CCashlessNoCatDlg(const PaymentPlace& place, std::int32_t amount, std::string_view text)
    : PaymentDialog(
          place,
          std::make_unique<Exchange>(place.files, ExchangeFolder(place.databaseFolder), &place.journal),
          amount, text) {}

}  // namespace kova::cashless
