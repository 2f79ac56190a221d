#include "cashless/win32/unresolved_payments_dialog.h"

#include <utility>

#include "cashless/cashless_payment.h"
#include "cashless/payment_kinds.h"

namespace kova::cashless {

using window::Box;
using window::Column;
using window::Row;
using window::Space;

UnresolvedPaymentsDialog::UnresolvedPaymentsDialog(UnresolvedPayments& unresolved,
                                                   std::vector<UnresolvedPayment> payments)
    : Dialog("結果が確認できていない決済", {640, 440}),
      unresolved_(unresolved),
      payments_(std::move(payments)) {}

void UnresolvedPaymentsDialog::AddControls() {
  AddLabel(kExplanation,
           "次の決済は、結果が確認できないまま終わっています。\n"
           "決済端末で取引結果を確認し、確認した内容を入れて記録してください。");
  AddLabel(kPaymentsLabel, "決済(&L)");
  AddOther(kPayments, WC_LISTVIEWW, window::VirtualList::kStyle);
  AddLabel(kFindingLabel, "端末の報告");
  AddOther(kFinding, WC_EDITW, ES_READONLY | ES_MULTILINE | ES_AUTOVSCROLL);
  AddLabel(kReasonLabel, "確認した内容(&R)");
  AddEdit(kReason);
  AddButton(kPaid, "決済成立と記録(&P)");
  AddButton(kNotPaid, "不成立と記録(&N)");
  AddButton(IDCANCEL, "後で確認");
}

Box UnresolvedPaymentsDialog::Arrange() const {
  const int gap = Dip(8);
  return Column(gap,
                {Natural(kExplanation), Natural(kPaymentsLabel), AtLeast(kPayments, {560, 120}).Stretch(),
                 Natural(kFindingLabel), AtLeast(kFinding, {560, 52}),
                 Row(gap, {Natural(kReasonLabel), AtLeast(kReason, {280, 0}).Stretch()}),
                 Row(gap,
                     {Natural(kPaid), Natural(kNotPaid), Space(0, 0).Stretch(), AtLeast(IDCANCEL, {90, 0})})})
      .Margin(Dip(12));
}

void UnresolvedPaymentsDialog::OnStart() {
  list_.Attach(
      Item(kPayments),
      {{"日時", Dip(140)}, {"金額", Dip(90), LVCFMT_RIGHT}, {"決済方法", Dip(100)}, {"内容", Dip(220)}},
      [this](int row, int column) { return CellText(row, column); });
  list_.SetRowCount(static_cast<int>(payments_.size()));
  list_.Select(0);
  ShowSelected();
}

void UnresolvedPaymentsDialog::OnCommand(int control, int notification) {
  if (control == kReason && notification == EN_CHANGE) EnableSettling();
  if (notification != BN_CLICKED) return;
  if (control == kPaid) Settle(PaymentOutcome::kPaid);
  if (control == kNotPaid) Settle(PaymentOutcome::kNotPaid);
}

LRESULT UnresolvedPaymentsDialog::OnNotify(const NMHDR& header) {
  if (list_.Answer(header)) return 1;
  if (header.idFrom == kPayments && header.code == LVN_ITEMCHANGED) ShowSelected();
  return 0;
}

const UnresolvedPayment* UnresolvedPaymentsDialog::Selected() const {
  const auto row = list_.Selected();
  return row && *row < static_cast<int>(payments_.size()) ? &payments_[static_cast<std::size_t>(*row)]
                                                          : nullptr;
}

void UnresolvedPaymentsDialog::ShowSelected() {
  const UnresolvedPayment* payment = Selected();
  ShowIfChanged(kFinding, payment == nullptr ? "" : payment->finding);
  EnableSettling();
}

void UnresolvedPaymentsDialog::EnableSettling() {
  const UnresolvedPayment* payment = Selected();
  const bool isOpen = payment != nullptr && payment->entry.IsUnresolved();
  const std::wstring reason = window::WindowText(Item(kReason));
  const bool can = isOpen && reason.find_first_not_of(L" \x3000") != std::wstring::npos;
  Enable(kReason, isOpen);
  Enable(kPaid, can);
  Enable(kNotPaid, can);
}

void UnresolvedPaymentsDialog::Settle(PaymentOutcome outcome) {
  const UnresolvedPayment* payment = Selected();
  std::string reason;
  if (payment == nullptr || !TakeText(kReason, reason)) return;
  switch (unresolved_.Settle(payment->entry.name, outcome, reason)) {
    case os::FileOutcome::kOk:
    case os::FileOutcome::kNotThere:  // another window has settled it
      Removed(static_cast<std::size_t>(payment - payments_.data()));
      break;
    case os::FileOutcome::kBusy:
      Inform("決済端末の連携プログラムがこの決済を使用中です。しばらくしてからやり直してください。");
      break;
    default:
      Inform("決済の記録を保存できません。何も変更されていません。");
  }
}

void UnresolvedPaymentsDialog::Removed(std::size_t at) {
  payments_.erase(payments_.begin() + static_cast<std::ptrdiff_t>(at));
  if (payments_.empty()) {
    Close(IDOK);
    return;
  }
  ShowText(kReason, "");
  list_.Select(std::nullopt);
  list_.SetRowCount(static_cast<int>(payments_.size()));
  list_.Select(0);
  ShowSelected();
  Focus(kPayments);
}

std::string UnresolvedPaymentsDialog::CellText(int row, int column) const {
  if (row < 0 || row >= static_cast<int>(payments_.size())) return {};
  const JournalEntry& entry = payments_[static_cast<std::size_t>(row)].entry;
  switch (column) {
    case 0:
      return StartedAtText(entry);
    case 1:
      return AmountText(entry.amount);
    case 2:
      return std::string(KindCaption(entry.kind));
    default:
      return entry.text;
  }
}

void TellUnresolvedPayments(HWND parent, os::Files& files, std::string_view exchangeFolder,
                            PaymentJournal& journal) {
  UnresolvedPayments unresolved(files, exchangeFolder, journal);
  std::vector<UnresolvedPayment> payments;
  // A journal that cannot be read refuses the payment itself, and says so there.
  (void)unresolved.Look(payments);
  if (!payments.empty()) UnresolvedPaymentsDialog(unresolved, std::move(payments)).RunModal(parent);
}

}  // namespace kova::cashless
