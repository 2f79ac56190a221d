#pragma once

// "結果が確認できていない決済": what a crash, a power cut or a cancel left open, for the staff to settle.

#include <string>
#include <string_view>
#include <vector>

#include "cashless/unresolved_payments.h"
#include "window/dialog.h"
#include "window/virtual_list.h"

namespace kova::cashless {

class UnresolvedPaymentsDialog final : public window::Dialog {
 public:
  enum Id {
    kExplanation = 100,
    kPaymentsLabel,
    kPayments,
    kFindingLabel,
    kFinding,
    kReasonLabel,
    kReason,
    kPaid,
    kNotPaid,
  };

  /// Shows the payments that Look gave. `unresolved` must outlive the dialog.
  UnresolvedPaymentsDialog(UnresolvedPayments& unresolved, std::vector<UnresolvedPayment> payments);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  LRESULT OnNotify(const NMHDR& header) override;
  void OnOk() override {}

  void ShowSelected();
  void EnableSettling();
  void Settle(PaymentOutcome outcome);
  void Removed(std::size_t at);
  const UnresolvedPayment* Selected() const;
  std::string CellText(int row, int column) const;

  UnresolvedPayments& unresolved_;
  std::vector<UnresolvedPayment> payments_;
  window::VirtualList list_;
};

/// Shows the dialog when there is something to tell.
void TellUnresolvedPayments(HWND parent, os::Files& files, std::string_view exchangeFolder,
                            PaymentJournal& journal);

}  // namespace kova::cashless
