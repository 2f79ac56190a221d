#pragma once

// Payments of which a crash, a power cut or a cancel left the outcome open: what the bridge left of them
// since, and how the operator settles them.

#include <string>
#include <string_view>
#include <vector>

#include "cashless/payment_journal.h"

namespace kova::cashless {

/// What the exchange folder says of a payment.
enum class Evidence {
  kWithdrawn,   // the bridge had not taken it up; it was taken back just now
  kFinished,    // the bridge says that it was paid
  kFailed,      // the bridge says why it was not; see UnresolvedPayment::code
  kInProcess,   // the bridge has it still, or died over it
  kNothing,     // no file is left
  kUnreadable,  // the folder cannot be reached, or the bridge holds a file
};

struct UnresolvedPayment {
  JournalEntry entry;
  Evidence evidence = Evidence::kNothing;
  int code = 0;                                         // that the bridge gave; 0 for none
  PaymentOutcome suggested = PaymentOutcome::kUnknown;  // kPaid or kNotPaid where the evidence is certain
  std::string finding;                                  // the evidence as a sentence for the operator
};

class UnresolvedPayments {
 public:
  /// All must outlive this object.
  UnresolvedPayments(os::Files& files, std::string_view exchangeFolder, PaymentJournal& journal);

  /// Every payment of the journal without a known outcome, oldest first. A request that still waits for a
  /// bridge is taken back, lest it be charged when nobody expects it any more; that is on record then, told
  /// this once, and need not be settled.
  [[nodiscard]] os::FileOutcome Look(std::vector<UnresolvedPayment>& payments);

  /// Records the operator's finding (PaymentJournal::Settle) and removes the payment's files. kBusy while the
  /// request is there and cannot be taken back.
  [[nodiscard]] os::FileOutcome Settle(std::string_view name, PaymentOutcome outcome,
                                       std::string_view reason);

 private:
  UnresolvedPayment Examine(JournalEntry entry);

  os::Files& files_;
  std::string folder_;
  PaymentJournal& journal_;
};

}  // namespace kova::cashless
