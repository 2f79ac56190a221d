#include "cashless/unresolved_payments.h"

#include <utility>

#include "cashless/result_codes.h"

namespace kova::cashless {
namespace {

using os::FileOutcome;

std::string Finding(Evidence evidence, int code) {
  switch (evidence) {
    case Evidence::kWithdrawn:
      return "決済端末は要求を受け取っていませんでした。要求を取り消しました。";
    case Evidence::kFinished:
      return "決済端末は決済の完了を報告しています。";
    case Evidence::kFailed:
      return "決済端末はエラー " + std::to_string(code) + " を報告しています。" + ResultMessage(code);
    case Evidence::kInProcess:
      return "決済端末が処理中のままです。決済端末で取引結果を確認してください。";
    case Evidence::kNothing:
      return "決済端末からの報告がありません。決済端末で取引結果を確認してください。";
    case Evidence::kUnreadable:
      break;
  }
  return "決済端末からの報告を読み取れません。しばらくしてからやり直してください。";
}

Evidence EvidenceOf(ExchangeFiles& exchange, int& code) {
  ExchangeStatus status = ExchangeStatus::kNone;
  if (exchange.TakeBack(status) != FileOutcome::kOk) return Evidence::kUnreadable;
  switch (status) {
    case ExchangeStatus::kRequested:
      return Evidence::kWithdrawn;
    case ExchangeStatus::kFinished:
      return Evidence::kFinished;
    case ExchangeStatus::kError:
      return exchange.ReadResult(code) == FileOutcome::kOk ? Evidence::kFailed : Evidence::kUnreadable;
    case ExchangeStatus::kInProcess:
      return Evidence::kInProcess;
    case ExchangeStatus::kNone:
      break;
  }
  return exchange.IsFolderThere() ? Evidence::kNothing : Evidence::kUnreadable;
}

PaymentOutcome Suggested(Evidence evidence, int code) {
  if (evidence == Evidence::kWithdrawn) return PaymentOutcome::kNotPaid;
  if (evidence == Evidence::kFinished) return PaymentOutcome::kPaid;
  return evidence == Evidence::kFailed ? OutcomeOfFailure(code) : PaymentOutcome::kUnknown;
}

}  // namespace

UnresolvedPayments::UnresolvedPayments(os::Files& files, std::string_view exchangeFolder,
                                       PaymentJournal& journal)
    : files_(files), folder_(exchangeFolder), journal_(journal) {}

UnresolvedPayment UnresolvedPayments::Examine(JournalEntry entry) {
  UnresolvedPayment payment;
  payment.entry = std::move(entry);
  ExchangeFiles exchange(files_, folder_, payment.entry.name);
  payment.evidence = EvidenceOf(exchange, payment.code);
  if (payment.evidence == Evidence::kNothing && payment.entry.code != 0) {
    // The dialog read the report and removed it.
    payment.evidence = Evidence::kFailed;
    payment.code = payment.entry.code;
  }
  if (payment.evidence == Evidence::kWithdrawn &&
      journal_.Close(payment.entry.name, PaymentOutcome::kNotPaid, kNotTakenUpCode) == FileOutcome::kOk) {
    payment.entry.outcome = PaymentOutcome::kNotPaid;
  }
  payment.suggested = Suggested(payment.evidence, payment.code);
  payment.finding = Finding(payment.evidence, payment.code);
  return payment;
}

FileOutcome UnresolvedPayments::Look(std::vector<UnresolvedPayment>& payments) {
  payments.clear();
  std::vector<JournalEntry> entries;
  const FileOutcome outcome = journal_.ReadUnresolved(entries);
  for (JournalEntry& entry : entries) payments.push_back(Examine(std::move(entry)));
  return outcome;
}

FileOutcome UnresolvedPayments::Settle(std::string_view name, PaymentOutcome outcome,
                                       std::string_view reason) {
  ExchangeFiles exchange(files_, folder_, name);
  ExchangeStatus status = ExchangeStatus::kNone;
  if (exchange.TakeBack(status) != FileOutcome::kOk) return FileOutcome::kBusy;
  const FileOutcome settled = journal_.Settle(name, outcome, reason);
  if (settled == FileOutcome::kOk) exchange.Remove();
  return settled;
}

}  // namespace kova::cashless
