#pragma once

// A payment at the terminal as a decision without a window, whatever reaches the terminal. A window shows
// Shown(), ticks every TickInterval() while that says so, and closes when it says so. A window that is to be
// closed in any way calls Cancel() and stays open unless told to close.

#include <ctime>
#include <string_view>

#include "cashless/exchange_files.h"
#include "cashless/payment_view.h"

namespace kova::cashless {

class TerminalPayment {
 public:
  TerminalPayment() = default;
  TerminalPayment(const TerminalPayment&) = delete;
  TerminalPayment& operator=(const TerminalPayment&) = delete;
  virtual ~TerminalPayment() = default;

  /// Asks for a payment; false, and nothing is started, while one goes on or when it cannot be asked for. The
  /// status text or the message says why.
  virtual bool Start(const PaymentRequest& request, const std::tm& now) = 0;

  /// Looks what became of the payment that is waited for.
  virtual const PaymentView& Tick() = 0;

  /// Ends the waiting, or closes.
  virtual const PaymentView& Cancel() = 0;

  /// Milliseconds between two ticks.
  virtual int TickInterval() const = 0;

  const PaymentView& Shown() const { return view_; }

  /// Shows why nothing was started; gives false.
  bool Refuse(std::string_view why);

 protected:
  /// A payment is waited for.
  void ShowWaiting(int state);
  /// The payment ended; a result that was shown stays.
  void ShowEnded(PaymentOutcome outcome);

  PaymentView view_;
};

}  // namespace kova::cashless
