#include "cashless/terminal_payment.h"

#include "cashless/result_codes.h"

namespace kova::cashless {

bool TerminalPayment::Refuse(std::string_view why) {
  view_.statusText = why;
  return false;
}

void TerminalPayment::ShowWaiting(int state) {
  view_ = {};
  view_.state = state;
  view_.isTicking = true;
  view_.kindsEnabled = false;
  view_.cancelCaption = kStopCaption;
  view_.statusText = kWaitingText;
}

void TerminalPayment::ShowEnded(PaymentOutcome outcome) {
  view_.state = kIdle;
  view_.isTicking = false;
  view_.kindsEnabled = true;
  view_.cancelCaption = kCancelCaption;
  view_.statusText.clear();
  view_.outcome = outcome;
  if (outcome == PaymentOutcome::kUnknown) view_.note = kCheckNote;
}

}  // namespace kova::cashless
