#include "cashless/payment_entry.h"

namespace kova::cashless {
namespace {

constexpr std::string_view kChangerSection = "CASHCHANGER";

/// What the caller's choice comes to; kCashless where nothing is asked.
CashChoice Choose(PaymentDialogs& dialogs, const PaymentCall& call, bool hasChanger, unsigned type) {
  if (call.cashlessOnly) return CashChoice::kCashless;
  if (!call.offersChoice || type == 0) return CashlessOrCash(dialogs, call.amount, type, 0);
  return hasChanger ? CashlessOrCash(dialogs, call.amount, type, 1) : CashChoice::kCashless;
}

}  // namespace

unsigned CashlessType(const foundation::SettingsStore& settings) {
  return static_cast<unsigned>(settings.OptSys("CashlessOpt.sys"));
}

CashChoice CashlessOrCash(PaymentDialogs& dialogs, std::int32_t amount, unsigned type, int flag) {
  if (amount <= 0 || type == 0) return CashChoice::kCash;
  const int end = dialogs.Choose(amount, type, flag);
  if (end == kChoseCash) return CashChoice::kCash;
  return end == kChoseCashless ? CashChoice::kCashless : CashChoice::kCancelled;
}

bool CallCashless(PaymentDialogs& dialogs, std::int32_t amount, unsigned type, std::string_view text,
                  std::string& result) {
  return IsBridgeType(type) ? dialogs.PayByBridge(amount, text, result)
                            : dialogs.PayByControl(amount, text, result);
}

PaymentAnswer Payment(PaymentDialogs& dialogs, const PaymentCall& call, bool hasChanger, unsigned type,
                      std::string& result) {
  switch (Choose(dialogs, call, hasChanger, type)) {
    case CashChoice::kCancelled:
      return PaymentAnswer::kFailed;
    case CashChoice::kCash:
      return PaymentAnswer::kCash;
    case CashChoice::kCashless:
      break;
  }
  if (call.amount < 1) return PaymentAnswer::kCash;
  return CallCashless(dialogs, call.amount, type, call.text, result) ? PaymentAnswer::kCashless
                                                                     : PaymentAnswer::kFailed;
}

bool HasCashChanger(unsigned option, const os::ApplicationProfile& profile) {
  return option != 0 && profile.GetInt(kChangerSection, "CALL", 1) != 0;
}

int UseCashChanger(CashChanger& changer, unsigned option, const os::ApplicationProfile& profile,
                   const foundation::SettingsStore& settings, const ChangerSale& sale,
                   PaymentMethods& methods) {
  if (sale.changeAmount == 0 || !HasCashChanger(option, profile)) return 0;
  if (sale.changeAmount < 0 && profile.GetInt(kChangerSection, "CASHRETURN", 1) == 0) return 0;
  std::optional<std::string> method;
  const bool isWanted = settings.Open().GetInt("GLOBAL", "CASHCHANGER_INIT", 1) == 0;
  if (isWanted && !methods.Read(sale.methodCode, method)) return 0;
  return changer.Exchange(sale.changeAmount, method);
}

}  // namespace kova::cashless
