#include "cashless/payment_kinds.h"

namespace kova::cashless {
namespace {

constexpr std::string_view kSection = "CASHLESS";

constexpr std::array<PaymentKind, 12> kKinds = {{
    {1, "USE_CREDIT", "PAY_CREDIT", "PAYTYPE_CREDIT", "クレジット"},
    {2, "USE_UNIONPAY", "PAY_UNIONPAY", "", "銀聯"},
    {3, "USE_ID", "PAY_ID", "", "iD"},
    {4, "USE_WAON", "PAY_WAON", "WAON_POINT", "WAON"},
    {5, "USE_QUICPAY", "PAY_QUICPAY", "", "QUICPay"},
    {6, "USE_NANACO", "PAY_NANACO", "", "nanaco"},
    {7, "USE_EDY", "PAY_EDY", "", "Edy"},
    {8, "USE_SUICA", "PAY_SUICA", "", "Suica"},
    {9, "USE_DEBIT", "PAY_DEBIT", "", "デビット"},
    {10, "USE_PITAPA", "PAY_PITAPA", "", "PiTaPa"},
    {11, "USE_NFCPAY", "PAY_NFCPAY", "PAYTYPE_NFCPAY", "NFC Pay"},
    {12, "USE_QR", "PAY_QR", "", "QRコード"},
}};

}  // namespace

const std::array<PaymentKind, 12>& PaymentKinds() { return kKinds; }

std::string_view KindCaption(int number) {
  const bool isKind = number >= 1 && number <= static_cast<int>(kKinds.size());
  return isKind ? kKinds[static_cast<std::size_t>(number) - 1].caption : "不明";
}

CashlessSettings ReadCashlessSettings(const foundation::SettingsSnapshot& settings) {
  CashlessSettings read;
  for (const PaymentKind& kind : kKinds) {
    if (settings.GetInt(kSection, kind.useKey, 0) == 0) continue;
    const int payType = kind.payTypeKey.empty() ? 0 : settings.GetInt(kSection, kind.payTypeKey, 0);
    read.kinds.push_back({&kind, settings.GetString(kSection, kind.methodKey, ""), payType});
  }
  read.isTraining = settings.GetInt(kSection, "Training", 0) != 0;
  return read;
}

PaymentRequest MakeRequest(const CashlessSettings& settings, const OfferedKind& offered, std::int32_t amount,
                           std::string_view text) {
  PaymentRequest request;
  request.amount = amount;
  request.kind = offered.kind->number;
  request.payType = offered.payType;
  request.training = settings.isTraining ? 1 : 0;
  request.text = text;
  return request;
}

}  // namespace kova::cashless
