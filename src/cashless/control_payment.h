#pragma once

// A payment through a control object that drives the terminal.

#include <ctime>
#include <string>

#include "cashless/payment_journal.h"
#include "cashless/terminal_control.h"
#include "cashless/terminal_payment.h"

namespace kova::cashless {

class ControlPayment final : public TerminalPayment {
 public:
  /// Without a journal nothing is put on record. Both must outlive this object.
  ControlPayment(TerminalControl& control, PaymentJournal* journal);

  /// Refuses what Exchange::Start refuses, files aside. A control that cannot be opened, or does not begin,
  /// shows its result; whether money can have been taken is on record. While it goes on the state is the
  /// payment kind.
  bool Start(const PaymentRequest& request, const std::tm& now) override;

  const PaymentView& Tick() override;

  /// Asks the control to abort a payment that goes on, tells "正常動作" and closes. A payment that was
  /// through before is paid, and closes so; one of which the control does not say that it came to nothing
  /// stays on record.
  const PaymentView& Cancel() override;

  /// The control answers at once: a result is shown without noticeable delay.
  int TickInterval() const override { return 250; }

 private:
  void Fail(ControlResult result);
  void Finish(ControlResult result);
  void End(PaymentOutcome outcome, int code);

  TerminalControl& control_;
  PaymentJournal* journal_;
  std::string name_;
};

}  // namespace kova::cashless
