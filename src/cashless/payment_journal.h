#pragma once

// The record of one workstation's payments through the bridge: what was asked of the terminal and what came
// of it, so that a crash or a power cut loses no payment's outcome. docs/cashless.md has the format.

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cashless/exchange_files.h"
#include "cashless/payment_view.h"
#include "platform/os/files.h"

namespace kova::cashless {

struct JournalEntry {
  std::string startedAt;  // YYYYMMDDHHMMSS
  std::string name;       // of the transaction
  std::int32_t amount = 0;
  std::int32_t kind = 0;  // PaymentKind::number
  std::string text;       // whom or what it is for
  PaymentOutcome outcome = PaymentOutcome::kOpen;
  int code = 0;        // that the bridge gave; 0 for none
  std::string reason;  // of whoever settled it; empty when nobody had to
  bool operator==(const JournalEntry&) const = default;

  bool IsUnresolved() const {
    return outcome == PaymentOutcome::kOpen || outcome == PaymentOutcome::kUnknown;
  }
};

/// The journal of the application profile `profilePath`: beside it, ".payments" behind its name.
std::string JournalPath(std::string_view profilePath);

class PaymentJournal {
 public:
  /// The file need not exist. `files` must outlive this object.
  PaymentJournal(os::Files& files, std::string path);

  /// Records a payment that is about to be asked for; durable when kOk. kChanged when there is one of that
  /// name. Until Close, other programs with this journal take it for one that is going on.
  [[nodiscard]] os::FileOutcome Begin(const PaymentRequest& request, const std::tm& now);

  /// Records what came of it. kNotThere when there is no unresolved payment of that name.
  [[nodiscard]] os::FileOutcome Close(std::string_view name, PaymentOutcome outcome, int code);

  /// Records what the operator found out: kPaid or kNotPaid, and why, which must not be blank (else kFailed).
  [[nodiscard]] os::FileOutcome Settle(std::string_view name, PaymentOutcome outcome,
                                       std::string_view reason);

  /// All payments, oldest first, but the damaged lines; their number in `damaged` unless null. Over 16 MB
  /// kTooLarge.
  [[nodiscard]] os::FileOutcome Read(std::vector<JournalEntry>& entries,
                                     std::size_t* damaged = nullptr) const;

  /// The payments without a known outcome. While another program has one going on, only those that were
  /// closed as unknown.
  [[nodiscard]] os::FileOutcome ReadUnresolved(std::vector<JournalEntry>& entries) const;

 private:
  using Change = std::function<os::FileOutcome(std::vector<std::string>& lines)>;
  os::FileOutcome ReadLines(std::vector<std::string>& lines) const;
  os::FileOutcome ChangeLines(const Change& change);
  os::FileOutcome ChangeEntry(std::string_view name, const std::function<void(JournalEntry&)>& change);
  bool IsOneGoingOn() const;

  os::Files& files_;
  std::string path_;
  std::string goingOnName_;  // of the payment that was begun last
  std::unique_ptr<os::FileLock> goingOn_;
};

}  // namespace kova::cashless
