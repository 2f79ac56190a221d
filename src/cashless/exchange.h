#pragma once

// A payment through the bridge, by files in the exchange folder.

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "cashless/exchange_files.h"
#include "cashless/payment_journal.h"
#include "cashless/terminal_payment.h"

namespace kova::cashless {

class Exchange final : public TerminalPayment {
 public:
  /// In that exchange folder; without a journal nothing is put on record. Both must outlive this object.
  Exchange(os::Files& files, std::string_view folder, PaymentJournal* journal);

  /// Asks the bridge for a payment; false, and nothing is started, when
  /// - a payment goes on,
  /// - the amount is below 1,
  /// - there are files of an earlier payment with the same base name,
  /// - the journal cannot be written (a payment that leaves no record is not asked for), or
  /// - the request file cannot be created.
  /// The status text says why.
  bool Start(const PaymentRequest& request, const std::tm& now) override;

  /// Goes on with a payment that another process has started: waiting, whatever its files say.
  void Resume(std::string_view name);

  /// Looks at the files while a payment is waited for. At most five questions after files while nothing has
  /// changed.
  const PaymentView& Tick() override;

  /// Ends the waiting, or closes. While the bridge is at work nothing is removed: the first call says what is
  /// to be done at the terminal and stops the ticks, a second one closes.
  const PaymentView& Cancel() override;

  int TickInterval() const override { return kTickInterval; }

 private:
  void Wait();
  void Expire();
  bool TakeResult();
  void End(PaymentOutcome outcome, int code, bool filesGo);
  ExchangeStatus StatusForCancel();
  void AskForReset();

  os::Files& files_;
  std::string folder_;
  PaymentJournal* journal_;
  std::string name_;
  std::optional<ExchangeFiles> exchange_;  // of the payment that was started last
  bool resetAsked_ = false;
};

}  // namespace kova::cashless
