#include "cashless/cashless_payment.h"

#include <cstdio>

#include "cashless/payment_names.h"
#include "platform/toollib/tools.h"

namespace kova::cashless {

CashlessPayment::CashlessPayment(const PaymentPlace& place, TerminalPayment& terminal, std::int32_t amount,
                                 std::string_view text)
    : place_(place), terminal_(terminal), amount_(amount), text_(text) {}

void CashlessPayment::Begin(std::size_t kind, std::int64_t at) {
  if (kind >= place_.settings.kinds.size() || Shown().state != kIdle) return;
  const std::tm now = place_.now();
  PaymentName name;
  if (TakePaymentName(place_.files, place_.databaseFolder, place_.workstation, now, name) !=
      os::FileOutcome::kOk) {
    (void)terminal_.Refuse("決済番号を取得できません。データベースフォルダーを確認してください。");
    return;
  }
  PaymentRequest request = MakeRequest(place_.settings, place_.settings.kinds[kind], amount_, text_);
  request.name = name.name;
  request.sequence = name.sequence;
  kind_ = kind;
  begunAt_ = at;
  (void)terminal_.Start(request, now);
}

std::string CashlessPayment::WaitingTime(std::int64_t at) const {
  if (Shown().state == kIdle) return {};
  const auto seconds = static_cast<int>((at - begunAt_) / 1000);
  char text[48];
  std::snprintf(text, sizeof text, "待ち時間 %d:%02d", seconds / 60, seconds % 60);
  return text;
}

std::string CashlessPayment::ResultText() const {
  return Shown().outcome == PaymentOutcome::kPaid ? place_.settings.kinds[kind_].method : std::string();
}

std::string AmountText(std::int32_t amount) { return CTools::NumericFormat(amount) + "円"; }

std::string StartedAtText(const JournalEntry& entry) {
  const std::string& at = entry.startedAt;
  if (at.size() != 14) return at;
  return CTools::MakeDate(std::string_view(at).substr(0, 8)) + " " + at.substr(8, 2) + ":" + at.substr(10, 2);
}

}  // namespace kova::cashless
