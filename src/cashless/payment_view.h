#pragma once

// What a payment dialog shows, whatever carries the payment out.

#include <optional>
#include <string>
#include <string_view>

namespace kova::cashless {

/// What became of a payment at the terminal.
enum class PaymentOutcome {
  kOpen,     // not known yet
  kPaid,     // the money was taken
  kNotPaid,  // it certainly was not
  kUnknown,  // only the terminal can tell
};

/// The dialog's state word; a control's operation in progress is 0 or more.
inline constexpr int kIdle = -1;
inline constexpr int kWaitingForBridge = -2;

inline constexpr std::string_view kCancelCaption = "キャンセル";
inline constexpr std::string_view kStopCaption = "決済処理停止";
inline constexpr std::string_view kWaitingText = "決済処理中...";

/// How often a waiting dialog ticks, in milliseconds.
inline constexpr int kTickInterval = 3000;

struct PaymentView {
  enum class Closing { kStays, kWithOk, kWithCancel };

  int state = kIdle;
  bool isTicking = false;    // the timer runs
  bool kindsEnabled = true;  // the buttons of the payment kinds
  std::string_view cancelCaption = kCancelCaption;
  std::string statusText;
  std::optional<int> resultCode;  // nothing: the field is empty
  std::string message;            // for the message field
  std::string note;               // to be added below the message; empty for none
  Closing closing = Closing::kStays;
  PaymentOutcome outcome = PaymentOutcome::kOpen;  // of the payment that ended last
};

}  // namespace kova::cashless
