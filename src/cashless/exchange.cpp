#include "cashless/exchange.h"

#include "cashless/result_codes.h"

namespace kova::cashless {

using os::FileOutcome;
using Closing = PaymentView::Closing;

Exchange::Exchange(os::Files& files, std::string_view folder, PaymentJournal* journal)
    : files_(files), folder_(folder), journal_(journal) {}

bool Exchange::Start(const PaymentRequest& request, const std::tm& now) {
  if (view_.state != kIdle) return false;
  view_ = {};
  if (request.amount < 1) return Refuse("決済金額が正しくありません。");
  name_ = request.name;
  exchange_.emplace(files_, folder_, name_);
  if (exchange_->Status() != ExchangeStatus::kNone)
    return Refuse("同じ取引名の決済ファイルが残っています。決済は開始されていません。");
  if (journal_ != nullptr && journal_->Begin(request, now) != FileOutcome::kOk)
    return Refuse("決済の記録を保存できません。決済は開始されていません。");
  if (exchange_->Put(request) != FileOutcome::kOk) {
    // Over a network a renaming can be told as failed and have happened.
    ExchangeStatus status = ExchangeStatus::kNone;
    const bool isBack = exchange_->TakeBack(status) == FileOutcome::kOk &&
                        (status == ExchangeStatus::kNone || status == ExchangeStatus::kRequested);
    End(isBack ? PaymentOutcome::kNotPaid : PaymentOutcome::kUnknown, kNormalCode, isBack);
    return Refuse("決済要求ファイルを作成できません。決済は開始されていません。");
  }
  Wait();
  return true;
}

void Exchange::Resume(std::string_view name) {
  name_ = name;
  exchange_.emplace(files_, folder_, name_);
  Wait();
}

void Exchange::Wait() {
  resetAsked_ = false;
  ShowWaiting(kWaitingForBridge);
}

const PaymentView& Exchange::Tick() {
  if (!view_.isTicking) return view_;
  switch (exchange_->Status()) {
    case ExchangeStatus::kRequested:
      Expire();
      break;
    case ExchangeStatus::kFinished:
      End(PaymentOutcome::kPaid, kNormalCode, true);
      view_.closing = Closing::kWithOk;
      break;
    case ExchangeStatus::kError:
      (void)TakeResult();
      break;
    case ExchangeStatus::kInProcess:
      view_.statusText = kWaitingText;
      break;
    case ExchangeStatus::kNone:
      view_.statusText = kWaitingText;
      if (!exchange_->IsFolderThere()) view_.statusText += " (決済フォルダーに接続できません)";
      break;
  }
  return view_;
}

// Deliberately strict: a bridge that is not there at the first tick fails the payment.
void Exchange::Expire() {
  const FileOutcome taken = exchange_->Withdraw();
  if (taken == FileOutcome::kNotThere) return;  // the bridge took it up in this moment
  const bool isGone = taken == FileOutcome::kOk || taken == FileOutcome::kChanged;
  ShowResult(view_, kNotTakenUpCode);
  End(taken == FileOutcome::kOk ? PaymentOutcome::kNotPaid : PaymentOutcome::kUnknown, kNotTakenUpCode,
      isGone);
}

// False when the bridge holds the file, or has taken it away: the next tick looks again.
bool Exchange::TakeResult() {
  int code = kNoCode;
  if (exchange_->ReadResult(code) != FileOutcome::kOk) return false;
  ShowResult(view_, code);
  End(OutcomeOfFailure(code), code, true);
  return true;
}

void Exchange::End(PaymentOutcome outcome, int code, bool filesGo) {
  ShowEnded(outcome);
  // The files are the only other evidence; what is not on record keeps them.
  const bool isRecorded = journal_ == nullptr || journal_->Close(name_, outcome, code) == FileOutcome::kOk;
  if (isRecorded && filesGo) exchange_->Remove();
}

// A request that is still there is taken back; otherwise what the bridge made of it.
ExchangeStatus Exchange::StatusForCancel() {
  ExchangeStatus status = ExchangeStatus::kNone;
  return exchange_->TakeBack(status) == FileOutcome::kOk ? status : ExchangeStatus::kInProcess;
}

const PaymentView& Exchange::Cancel() {
  view_.closing = Closing::kWithCancel;
  if (view_.state != kWaitingForBridge) return view_;
  view_.isTicking = false;
  switch (StatusForCancel()) {
    case ExchangeStatus::kFinished:  // the money was taken already
      End(PaymentOutcome::kPaid, kNormalCode, true);
      view_.closing = Closing::kWithOk;
      break;
    case ExchangeStatus::kRequested:
      End(PaymentOutcome::kNotPaid, kNormalCode, true);
      break;
    case ExchangeStatus::kError:
      if (!TakeResult()) End(PaymentOutcome::kUnknown, kNormalCode, false);
      break;
    case ExchangeStatus::kInProcess:
      if (!resetAsked_) {
        AskForReset();
      } else {
        End(PaymentOutcome::kUnknown, kNormalCode, false);
      }
      break;
    case ExchangeStatus::kNone:  // taken up, and no answer; one that comes yet is kept
      End(PaymentOutcome::kUnknown, kNormalCode, false);
      break;
  }
  return view_;
}

// The payment must be undone at the terminal: nothing is removed, and the ticks do not go on (deliberately).
void Exchange::AskForReset() {
  resetAsked_ = true;
  view_.closing = Closing::kStays;
  view_.cancelCaption = kCancelCaption;
  view_.statusText.clear();
  view_.message = kResetMessage;
  view_.outcome = PaymentOutcome::kUnknown;
  if (journal_ != nullptr) (void)journal_->Close(name_, PaymentOutcome::kUnknown, kNormalCode);
}

}  // namespace kova::cashless
