#include "cashless/control_payment.h"

#include "cashless/result_codes.h"

namespace kova::cashless {

using os::FileOutcome;
using Closing = PaymentView::Closing;

std::string ControlName(const foundation::SettingsSnapshot& settings, unsigned type) {
  return settings.GetString("CASHLESS", type == 1 ? "INFOX_OCX" : "STERA_OCX", "");
}

ControlPayment::ControlPayment(TerminalControl& control, PaymentJournal* journal)
    : control_(control), journal_(journal) {}

bool ControlPayment::Start(const PaymentRequest& request, const std::tm& now) {
  if (view_.state != kIdle) return false;
  view_ = {};
  if (request.amount < 1) return Refuse("決済金額が正しくありません。");
  name_ = request.name;
  if (journal_ != nullptr && journal_->Begin(request, now) != FileOutcome::kOk)
    return Refuse("決済の記録を保存できません。決済は開始されていません。");
  ControlResult result = control_.Open(request.training != 0);
  if (result.code != kNormalCode) {
    ShowResult(view_, result.code, result.extended);
    End(PaymentOutcome::kNotPaid, result.code);  // nothing was asked of the terminal yet
    return false;
  }
  result = control_.Begin(request);
  if (result.code != kNormalCode) {
    Fail(result);
    return false;
  }
  ShowWaiting(request.kind);
  return true;
}

const PaymentView& ControlPayment::Tick() {
  ControlResult result;
  if (view_.isTicking && !control_.IsBusy(result)) Finish(result);
  return view_;
}

const PaymentView& ControlPayment::Cancel() {
  view_.closing = Closing::kWithCancel;
  if (view_.state == kIdle) return view_;
  ControlResult result;
  if (!control_.IsBusy(result)) {
    Finish(result);
    return view_;
  }
  const ControlResult aborted = control_.Abort();
  // Only the result of the payment itself excludes that money was taken.
  const bool isOver = aborted.code == kNormalCode && !control_.IsBusy(result) && result.code != kNormalCode;
  const auto outcome = isOver ? OutcomeOfFailure(result.code, result.extended) : PaymentOutcome::kUnknown;
  End(outcome, isOver ? result.code : kNormalCode);
  view_.resultCode = kNormalCode;
  view_.message = kNormalMessage;
  view_.closing = Closing::kWithCancel;
  return view_;
}

void ControlPayment::Finish(ControlResult result) {
  if (result.code != kNormalCode) {
    Fail(result);
    return;
  }
  End(PaymentOutcome::kPaid, kNormalCode);
  view_.closing = Closing::kWithOk;
}

void ControlPayment::Fail(ControlResult result) {
  ShowResult(view_, result.code, result.extended);
  End(OutcomeOfFailure(result.code, result.extended), result.code);
}

void ControlPayment::End(PaymentOutcome outcome, int code) {
  ShowEnded(outcome);
  if (journal_ != nullptr) (void)journal_->Close(name_, outcome, code);
  control_.Close();
}

}  // namespace kova::cashless
