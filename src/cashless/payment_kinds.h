#pragma once

// The kinds of cashless payment and what the practice's settings say of them.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cashless/exchange_files.h"
#include "foundation/settings.h"

namespace kova::cashless {

struct PaymentKind {
  int number;                   // in requests: 1 to 12; bridges rely on it, do not change
  std::string_view useKey;      // of section "CASHLESS": non-zero turns the kind on
  std::string_view methodKey;   // the practice's payment method for it (category class 2)
  std::string_view payTypeKey;  // the request's pay type; empty for 0
  std::string_view caption;
};

/// All of them, in the order of their buttons.
const std::array<PaymentKind, 12>& PaymentKinds();

/// The caption of the kind of that number; "不明" for another number.
std::string_view KindCaption(int number);

/// A kind that is turned on.
struct OfferedKind {
  const PaymentKind* kind;
  std::string method;  // the payment method's code; empty when none is set
  int payType;
};

struct CashlessSettings {
  std::vector<OfferedKind> kinds;  // in the order of their buttons
  bool isTraining = false;         // the terminal charges nothing
};

CashlessSettings ReadCashlessSettings(const foundation::SettingsSnapshot& settings);

/// The request for a payment of that kind, but its name and sequence.
PaymentRequest MakeRequest(const CashlessSettings& settings, const OfferedKind& offered, std::int32_t amount,
                           std::string_view text);

}  // namespace kova::cashless
