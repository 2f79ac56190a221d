#pragma once

// A control object that drives a terminal, as far as payments need it. docs/cashless.md says what is called
// of it.

#include <string>
#include <string_view>

#include "cashless/exchange_files.h"
#include "foundation/settings.h"

namespace kova::cashless {

/// What a control answers: an OPOS result code, and with 114 the extended one.
struct ControlResult {
  int code = 0;
  int extended = 0;
  bool operator==(const ControlResult&) const = default;
};

class TerminalControl {
 public:
  virtual ~TerminalControl() = default;

  /// Makes the terminal ready for payments. 104 when no such control is installed.
  [[nodiscard]] virtual ControlResult Open(bool isTraining) = 0;

  /// Begins the payment and comes back at once; 0 when it goes on.
  [[nodiscard]] virtual ControlResult Begin(const PaymentRequest& request) = 0;

  /// True while the payment goes on; then `result` says how it ended.
  [[nodiscard]] virtual bool IsBusy(ControlResult& result) = 0;

  /// Asks for the end of the payment that goes on.
  [[nodiscard]] virtual ControlResult Abort() = 0;

  /// Gives the terminal back to others; never fails.
  virtual void Close() = 0;
};

/// The control that the practice has set for a terminal type: "INFOX_OCX" of section "CASHLESS" for type 1,
/// "STERA_OCX" for any other; empty for none.
std::string ControlName(const foundation::SettingsSnapshot& settings, unsigned type);

}  // namespace kova::cashless
