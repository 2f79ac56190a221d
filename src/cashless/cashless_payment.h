#pragma once

// What a payment dialog does, without its window: one amount, asked for by the kind that the staff chooses,
// as often as it takes.

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>

#include "cashless/payment_journal.h"
#include "cashless/payment_kinds.h"
#include "cashless/terminal_payment.h"
#include "platform/os/files.h"

namespace kova::cashless {

/// Where a payment is made.
struct PaymentPlace {
  os::Files& files;
  std::string databaseFolder;
  std::string workstation;
  PaymentJournal& journal;
  CashlessSettings settings;
  std::function<std::tm()> now;
};

class CashlessPayment {
 public:
  /// `place` and `terminal` must outlive this object.
  CashlessPayment(const PaymentPlace& place, TerminalPayment& terminal, std::int32_t amount,
                  std::string_view text);

  /// Asks for the payment by the kind at that place of CashlessSettings::kinds, under a name of its own. `at`
  /// is the time in milliseconds, of any clock that runs evenly.
  void Begin(std::size_t kind, std::int64_t at);

  const PaymentView& Tick() { return terminal_.Tick(); }
  const PaymentView& Cancel() { return terminal_.Cancel(); }
  const PaymentView& Shown() const { return terminal_.Shown(); }
  int TickInterval() const { return terminal_.TickInterval(); }

  /// How long has been waited, for the staff; empty while nothing is waited for.
  std::string WaitingTime(std::int64_t at) const;

  /// The code of the payment method by which the paid amount is to be booked; empty when nothing was paid, or
  /// the practice has set none for the kind.
  std::string ResultText() const;

  std::int32_t Amount() const { return amount_; }
  const std::string& Text() const { return text_; }
  const PaymentPlace& Place() const { return place_; }

 private:
  const PaymentPlace& place_;
  TerminalPayment& terminal_;
  std::int32_t amount_;
  std::string text_;
  std::size_t kind_ = 0;
  std::int64_t begunAt_ = 0;
};

/// "12,345円".
std::string AmountText(std::int32_t amount);

/// When it was started, for people: "2026/11/23 10:15".
std::string StartedAtText(const JournalEntry& entry);

}  // namespace kova::cashless
