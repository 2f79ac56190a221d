#pragma once

// What the payment dialogs of all terminal types have in common.

#include <memory>
#include <string>
#include <string_view>

#include "cashless/cashless_payment.h"
#include "cashless/terminal_payment.h"
#include "window/dialog.h"

namespace kova::cashless {

class PaymentDialog : public window::Dialog {
 public:
  enum Id {
    kTraining = 100,
    kText,
    kAmountLabel,
    kAmount,
    kKinds,
    kNoKinds,
    kStatusLabel,
    kStatus,
    kWaiting,
    kCodeLabel,
    kCode,
    kMessageLabel,
    kMessage,
    kNote,
    kFirstKind = 200,  // and the following, in the order of CashlessSettings::kinds
  };

  /// Tells of payments without a known outcome first. True when the payment was completed; `result` is
  /// CashlessPayment::ResultText in any case.
  bool Pay(HWND parent, std::string& result);

 protected:
  /// `place` must outlive the dialog.
  PaymentDialog(const PaymentPlace& place, std::unique_ptr<TerminalPayment> terminal, std::int32_t amount,
                std::string_view text);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  void OnTimer(UINT_PTR timer) override;
  void OnOk() override {}  // a payment begins by its kind's button only
  void OnCancel() override;

  void Begin(std::size_t kind);
  void Show();
  void ShowWaiting();
  void EnableKinds(bool enabled);
  void CloseAs(const PaymentView& view);
  window::Box KindButtons() const;

  std::unique_ptr<TerminalPayment> terminal_;
  CashlessPayment payment_;
  int lastKind_ = kFirstKind;
};

}  // namespace kova::cashless
