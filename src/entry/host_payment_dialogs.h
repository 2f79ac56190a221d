#pragma once

#include <afxwin.h>

#include "cashless/payment_entry.h"

namespace kova::entry {

/// The payment dialogs over a window of the host's. Where there are no windows everything is cancelled.
class HostPaymentDialogs final : public cashless::PaymentDialogs {
 public:
  /// `type` is the terminal's; `parent` may be null.
  HostPaymentDialogs(CWnd* parent, unsigned type) : parent_(parent), type_(type) {}

  int Choose(std::int32_t amount, unsigned type, int flag) override;
  bool PayByBridge(std::int32_t amount, std::string_view text, std::string& result) override;
  bool PayByControl(std::int32_t amount, std::string_view text, std::string& result) override;

 private:
  CWnd* parent_;
  unsigned type_;
};

}  // namespace kova::entry
