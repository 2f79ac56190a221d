#pragma once

// The payment dialogs: over a control object that drives the terminal, and over the bridge.

#include <cstdint>
#include <memory>
#include <string_view>

#include "cashless/terminal_control.h"
#include "cashless/win32/payment_dialog.h"

namespace kova::cashless {

class CCashlessDlg final : public PaymentDialog {
 public:
  /// `place` and `control` must outlive the dialog.
  CCashlessDlg(const PaymentPlace& place, TerminalControl& control, std::int32_t amount,
               std::string_view text);
};

class CCashlessNoCatDlg final : public PaymentDialog {
 public:
  /// `place` must outlive the dialog.
  CCashlessNoCatDlg(const PaymentPlace& place, std::int32_t amount, std::string_view text);
};

}  // namespace kova::cashless
