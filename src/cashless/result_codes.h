#pragma once

// The result codes of a payment and what they say. docs/cashless.md has the table.

#include <string>
#include <string_view>

#include "cashless/payment_view.h"

namespace kova::cashless {

inline constexpr int kNormalCode = 0;
/// The bridge did not take the request up before the first tick.
inline constexpr int kNotTakenUpCode = 2;
/// The bridge's error file names no code.
inline constexpr int kNoCode = 99;
inline constexpr int kNoServiceCode = 104;
/// The terminal's own result; an extended code says which.
inline constexpr int kExtendedCode = 114;
/// A bridge has one number only: it reports extended code n as this and n.
inline constexpr int kTerminalCodes = 2000;

inline constexpr std::string_view kNormalMessage = "正常動作";
inline constexpr std::string_view kResetMessage = "決済端末にてリセット（決済取消）を行ってください。";
inline constexpr std::string_view kCheckNote =
    "決済が成立している可能性があります。必ず決済端末で取引結果を確認してください。";

/// The text for the message field: empty for code 0. `extended` counts with code 114 only.
std::string ResultMessage(int code, int extended = 0);

/// What a failure of that code means for the money: kNotPaid where the code excludes that it was taken, else
/// kUnknown, also for every code that is not in the table.
PaymentOutcome OutcomeOfFailure(int code, int extended = 0);

/// Shows a result: its code and its message.
void ShowResult(PaymentView& view, int code, int extended = 0);

}  // namespace kova::cashless
