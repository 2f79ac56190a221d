#pragma once

// How the rest of the suite takes a payment: cash or cashless, which dialog, and whether the cash changer
// takes part.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/settings_store.h"
#include "platform/os/application_profile.h"

namespace kova::cashless {

/// The installed terminal's type, by the switch file "CashlessOpt.sys"; 0: no cashless payment.
unsigned CashlessType(const foundation::SettingsStore& settings);

/// True for the types whose terminal is reached through the bridge (2 and 4).
constexpr bool IsBridgeType(unsigned type) { return type == 2 || type == 4; }

/// End codes of the choice dialog; any other: cancelled.
inline constexpr int kChoseCash = 101;
inline constexpr int kChoseCashless = 102;

class PaymentDialogs {
 public:
  virtual ~PaymentDialogs() = default;

  /// Asks for cash or cashless; gives the end code. `flag` is 1 when the caller offers the choice beside a
  /// cash changer, else 0.
  virtual int Choose(std::int32_t amount, unsigned type, int flag) = 0;

  /// Runs the payment dialog over the bridge or over a terminal control; true when the payment was completed.
  /// `result` is the dialog's result text in any case.
  virtual bool PayByBridge(std::int32_t amount, std::string_view text, std::string& result) = 0;
  virtual bool PayByControl(std::int32_t amount, std::string_view text, std::string& result) = 0;
};

/// Answers of CashlessOrCash.
enum class CashChoice { kCancelled = 0, kCash = 1, kCashless = 2 };

/// Asks only when there is something to pay and a terminal; otherwise the answer is cash.
CashChoice CashlessOrCash(PaymentDialogs& dialogs, std::int32_t amount, unsigned type, int flag);

/// Runs the dialog that fits the terminal type; true when the payment was completed.
bool CallCashless(PaymentDialogs& dialogs, std::int32_t amount, unsigned type, std::string_view text,
                  std::string& result);

/// Answers of Payment.
enum class PaymentAnswer { kFailed = -1, kCash = 0, kCashless = 1 };

/// What a caller of Payment says.
struct PaymentCall {
  std::int32_t amount = 0;
  std::string_view text;
  bool offersChoice = false;
  bool cashlessOnly = false;
};

/// kCash also when there is nothing to pay cashless (an amount below 1); kFailed when the user cancelled or
/// the cashless payment failed. `result` is untouched when no payment dialog ran.
PaymentAnswer Payment(PaymentDialogs& dialogs, const PaymentCall& call, bool hasChanger, unsigned type,
                      std::string& result);

/// The cash changer of this machine.
class CashChanger {
 public:
  virtual ~CashChanger() = default;
  /// Hands over what a sale changes in the drawer: yen that come in, or go out where negative. `method` is
  /// the name of the sale's payment method where the changer must be told it. Gives the changer's answer.
  virtual int Exchange(std::int32_t amount, const std::optional<std::string>& method) = 0;
};

/// True when the machine has a changer (`option` of the machine's settings is non-zero) and the profile lets
/// it be called ("CASHCHANGER"/"CALL").
bool HasCashChanger(unsigned option, const os::ApplicationProfile& profile);

/// The name of a payment method by its code.
class PaymentMethods {
 public:
  virtual ~PaymentMethods() = default;
  /// The method's name; nothing when there is no such method. False when that cannot be read.
  [[nodiscard]] virtual bool Read(std::string_view code, std::optional<std::string>& name) = 0;
};

/// What of a sale matters to the changer.
struct ChangerSale {
  std::int32_t changeAmount = 0;
  std::string_view methodCode;
};

/// Passes a sale to the changer and gives its answer; 0 when it is not to be passed on: there is no changer,
/// no change, or money to be returned where "CASHCHANGER"/"CASHRETURN" of the profile forbids it. The payment
/// method is read only where "GLOBAL"/"CASHCHANGER_INIT" of the practice's settings is 0; where that fails no money
/// is moved, and the answer is 0, too.
int UseCashChanger(CashChanger& changer, unsigned option, const os::ApplicationProfile& profile,
                   const foundation::SettingsStore& settings, const ChangerSale& sale,
                   PaymentMethods& methods);

}  // namespace kova::cashless
