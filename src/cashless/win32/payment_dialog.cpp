#include "cashless/win32/payment_dialog.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "cashless/exchange_files.h"
#include "cashless/unresolved_payments.h"
#include "cashless/win32/unresolved_payments_dialog.h"
#include "platform/os/clock.h"

namespace kova::cashless {

using window::Across;
using window::Box;
using window::Column;
using window::Grid;
using window::Row;
using window::Space;

namespace {

constexpr UINT_PTR kTickTimer = 1;
constexpr UINT_PTR kWaitingTimer = 2;
constexpr UINT kWaitingInterval = 500;  // milliseconds
constexpr std::size_t kKindsInRow = 4;
constexpr char kKindKeys[] = "1234567890AB";  // access keys

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kWarningText = RGB(176, 0, 0);
constexpr COLORREF kTrainingBack = RGB(200, 80, 0);

}  // namespace

PaymentDialog::PaymentDialog(const PaymentPlace& place, std::unique_ptr<TerminalPayment> terminal,
                             std::int32_t amount, std::string_view text)
    : Dialog("キャッシュレス決済", {560, 0}),
      terminal_(std::move(terminal)),
      payment_(place, *terminal_, amount, text) {}

bool PaymentDialog::Pay(HWND parent, std::string& result) {
  const PaymentPlace& place = payment_.Place();
  TellUnresolvedPayments(parent, place.files, ExchangeFolder(place.databaseFolder), place.journal);
  const bool paid = RunModal(parent) == IDOK;
  result = payment_.ResultText();
  return paid;
}

void PaymentDialog::AddControls() {
  const CashlessSettings& settings = payment_.Place().settings;
  if (settings.isTraining) {
    AddLabel(kTraining, "トレーニングモード　実際の決済は行われません", SS_CENTER | SS_CENTERIMAGE);
    UseLook(kTraining, {.textPercent = 120, .isBold = true, .text = kWhite, .background = kTrainingBack});
  }
  AddLabel(kText, payment_.Text(), SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS);
  AddLabel(kAmountLabel, "決済金額");
  AddLabel(kAmount, AmountText(payment_.Amount()), SS_RIGHT);
  UseLook(kAmount, {.textPercent = 300, .isBold = true});
  AddFrame(kKinds, "決済方法");
  for (std::size_t i = 0; i < settings.kinds.size(); ++i) {
    const std::string key = std::string("(&") + kKindKeys[i] + ")";
    AddButton(kFirstKind + static_cast<int>(i), std::string(settings.kinds[i].kind->caption) + key);
  }
  if (settings.kinds.empty()) AddLabel(kNoKinds, "使用する決済方法が設定されていません。");
  AddLabel(kStatusLabel, "状態");
  AddLabel(kStatus, "");
  AddLabel(kWaiting, "待ち時間 00:00");
  AddLabel(kCodeLabel, "結果コード");
  AddEdit(kCode, ES_READONLY | ES_RIGHT);
  AddLabel(kMessageLabel, "メッセージ");
  AddOther(kMessage, WC_EDITW, ES_READONLY | ES_MULTILINE | ES_AUTOVSCROLL);
  AddLabel(kNote, "");
  UseLook(kNote, {.isBold = true, .text = kWarningText});
  AddButton(IDCANCEL, kStopCaption);
}

Box PaymentDialog::KindButtons() const {
  std::vector<std::vector<Box>> rows;
  for (std::size_t i = 0; i < payment_.Place().settings.kinds.size(); ++i) {
    if (i % kKindsInRow == 0) rows.emplace_back();
    rows.back().push_back(AtLeast(kFirstKind + static_cast<int>(i), {124, 44}));
  }
  if (rows.empty()) return AtLeast(kNoKinds, {240, 44});
  while (rows.back().size() < kKindsInRow) rows.back().push_back(Space(Dip(124), Dip(44)));
  return Grid(Dip(8), Dip(8), std::move(rows), -1);
}

Box PaymentDialog::Arrange() const {
  const int gap = Dip(8);
  std::vector<Box> rows;
  if (payment_.Place().settings.isTraining)
    rows.push_back(AtLeast(kTraining, {520, 32}).Aligned(Across::kFill));
  rows.push_back(AtLeast(kText, {520, 18}).Aligned(Across::kFill));
  rows.push_back(Row(gap, {Natural(kAmountLabel), AtLeast(kAmount, {360, 0}).Stretch()}));
  rows.push_back(Column(gap, {Space(0, Dip(8)), KindButtons()}).Margin(Dip(10)).Framed(kKinds));
  const int names = Dip(72);
  const auto name = [&](int label) {
    Box box = Natural(label);
    box.least.width = std::max(box.least.width, names);
    return box;
  };
  rows.push_back(Row(gap, {name(kStatusLabel), AtLeast(kStatus, {300, 18}).Stretch(), Natural(kWaiting)}));
  rows.push_back(Row(gap, {name(kCodeLabel), AtLeast(kCode, {80, 0}), Space(0, 0).Stretch()}));
  rows.push_back(Row(gap, {name(kMessageLabel), AtLeast(kMessage, {420, 56}).Stretch()}).Stretch());
  rows.push_back(AtLeast(kNote, {530, 18}));
  rows.push_back(Row(0, {Space(0, 0).Stretch(), AtLeast(IDCANCEL, {130, 32})}));
  return Column(gap, std::move(rows)).Margin(Dip(12));
}

void PaymentDialog::OnStart() {
  Show();
  if (IsWindowEnabled(Item(kFirstKind)) != 0) Focus(kFirstKind);
}

void PaymentDialog::OnCommand(int control, int notification) {
  const int last = kFirstKind + static_cast<int>(payment_.Place().settings.kinds.size());
  if (notification == BN_CLICKED && control >= kFirstKind && control < last)
    Begin(static_cast<std::size_t>(control - kFirstKind));
}

void PaymentDialog::Begin(std::size_t kind) {
  lastKind_ = kFirstKind + static_cast<int>(kind);
  payment_.Begin(kind, os::MonotonicMilliseconds());
  if (payment_.Shown().isTicking) {
    SetTimer(Handle(), kTickTimer, static_cast<UINT>(payment_.TickInterval()), nullptr);
    SetTimer(Handle(), kWaitingTimer, kWaitingInterval, nullptr);
  }
  Show();
}

void PaymentDialog::OnTimer(UINT_PTR timer) {
  if (timer == kWaitingTimer) {
    ShowWaiting();
  } else {
    (void)payment_.Tick();
    Show();
  }
}

void PaymentDialog::OnCancel() {
  (void)payment_.Cancel();
  Show();
}

void PaymentDialog::Show() {
  const PaymentView& view = payment_.Shown();
  if (!view.isTicking) KillTimer(Handle(), kTickTimer);
  if (view.closing != PaymentView::Closing::kStays) {
    CloseAs(view);
    return;
  }
  ShowIfChanged(kStatus, view.statusText);
  ShowIfChanged(kCode, view.resultCode ? std::to_string(*view.resultCode) : "");
  ShowIfChanged(kMessage, view.message);
  ShowIfChanged(kNote, view.note);
  ShowIfChanged(IDCANCEL, view.cancelCaption);
  ShowWaiting();
  EnableKinds(view.kindsEnabled);
}

void PaymentDialog::ShowWaiting() {
  const std::string waiting = payment_.WaitingTime(os::MonotonicMilliseconds());
  if (waiting.empty()) KillTimer(Handle(), kWaitingTimer);
  ShowIfChanged(kWaiting, waiting);
}

// While they are disabled the focus is where neither Enter nor the space bar does anything: a second press
// meant for a button must not cancel the payment.
void PaymentDialog::EnableKinds(bool enabled) {
  const bool wasEnabled = IsWindowEnabled(Item(lastKind_)) != 0;
  if (enabled == wasEnabled) return;
  if (!enabled) Focus(kCode);
  for (std::size_t i = 0; i < payment_.Place().settings.kinds.size(); ++i)
    Enable(kFirstKind + static_cast<int>(i), enabled);
  if (enabled) Focus(lastKind_);
}

void PaymentDialog::CloseAs(const PaymentView& view) {
  KillTimer(Handle(), kWaitingTimer);
  const bool paid = view.closing == PaymentView::Closing::kWithOk;
  // What has not been read yet must not go with the window.
  const bool isNew = !view.note.empty() && window::WindowText(Item(kNote)).empty();
  if (!paid && isNew) Inform(view.note);
  Close(paid ? IDOK : IDCANCEL);
}

}  // namespace kova::cashless
