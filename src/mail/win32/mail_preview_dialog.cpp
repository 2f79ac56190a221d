#include "mail/win32/mail_preview_dialog.h"

#include <utility>

#include "platform/toollib/tools.h"

namespace kova::mail {

using store::GetText;
using window::Box;
using window::Column;
using window::Grid;
using window::Row;
using window::Space;

namespace {

std::string Unreadable(const char* what, int result) {
  return what + ("を読み込めません（" + std::to_string(result) + "）。しばらくしてから、もう一度お試しください。");
}

}  // namespace

MailPreviewDialog::MailPreviewDialog(MailTemplate shown, TemplateRole role, CKovaDBSys* db,
                                     const std::tm& now)
    : Dialog("メールのプレビュー", {560, 560}), template_(std::move(shown)), role_(role), db_(db), now_(now) {
  char today[16];
  std::strftime(today, sizeof today, "%Y%m%d", &now);
  day_ = today;
}

void MailPreviewDialog::AddControls() {
  AddButton(kDayBefore, "前の日(&P)");
  AddLabel(kDay, "0000/00/00（00 件）");
  AddButton(kDayAfter, "次の日(&N)");
  AddLabel(kReservationsLabel, "予約(&R)");
  AddOther(kReservations, WC_LISTVIEWW, window::VirtualList::kStyle);
  AddLabel(kToLabel, "宛先(&T)");
  AddEdit(kTo, ES_READONLY);
  AddLabel(kSubjectLabel, "メールの件名(&S)");
  AddEdit(kSubject, ES_READONLY);
  AddLabel(kBodyLabel, "メールの本文(&B)");
  AddTextBox(kBody, ES_READONLY);
  AddButton(IDCANCEL, "閉じる");
}

Box MailPreviewDialog::Arrange() const {
  const int gap = Dip(8);
  return Column(gap,
                {Row(gap, {Natural(kReservationsLabel), Space(0, 0).Stretch(), Natural(kDayBefore),
                           AtLeast(kDay, {140, 0}), Natural(kDayAfter)}),
                 AtLeast(kReservations, {420, 120}).Stretch(1),
                 Grid(gap, Dip(6),
                      {{Natural(kToLabel), Natural(kTo)}, {Natural(kSubjectLabel), Natural(kSubject)}}, 1),
                 Natural(kBodyLabel), AtLeast(kBody, {420, 160}).Stretch(2),
                 Row(0, {Space(0, 0).Stretch(), AtLeast(IDCANCEL, {90, 0})})})
      .Margin(Dip(12));
}

void MailPreviewDialog::OnStart() {
  list_.Attach(Item(kReservations), {{"時間", Dip(60)}, {"患者ID", Dip(110)}, {"氏名", Dip(220)}},
               [this](int row, int column) { return CellText(row, column); });
  Enable(kDayBefore, db_ != nullptr);
  Enable(kDayAfter, db_ != nullptr);
  ShowDay();
}

void MailPreviewDialog::OnCommand(int control, int notification) {
  if (notification != BN_CLICKED || (control != kDayBefore && control != kDayAfter)) return;
  day_ = DayAfter(day_, control == kDayAfter ? 1 : -1);
  ShowDay();
}

LRESULT MailPreviewDialog::OnNotify(const NMHDR& header) {
  if (list_.Answer(header)) return 1;
  if (header.idFrom == kReservations && header.code == LVN_ITEMCHANGED) ShowMail();
  return 0;
}

void MailPreviewDialog::ShowDay() {
  failure_ = db_ == nullptr ? 0 : ReservationsOfDay(db_, day_, rows_);
  const std::string count = failure_ == 0 ? "（" + std::to_string(rows_.size()) + " 件）" : "（- 件）";
  ShowText(kDay, db_ == nullptr ? "見本の予約" : CTools::MakeDate(day_) + count);
  list_.SetRowCount(static_cast<int>(rows_.size()));
  list_.Select(rows_.empty() ? std::nullopt : std::optional(0));
  ShowMail();
}

void MailPreviewDialog::ShowMail() {
  const auto row = list_.Selected();
  FilledMail mail;
  if (row && *row < static_cast<int>(rows_.size())) {
    const tagRESERVATION& reservation = rows_[static_cast<std::size_t>(*row)].reservation;
    const int result = PreviewFor(template_, role_, db_, reservation, now_, mail);
    if (result != 0) {
      mail.body = Unreadable("患者", result);
    } else if (mail.to.empty()) {
      mail.to = "（この患者には送信されません：アドレスがないか、受信を希望していません）";
    }
  } else if (db_ == nullptr) {
    mail = PreviewForExample(template_, role_, now_);
  } else if (failure_ != 0) {
    mail.body = Unreadable("予約", failure_);
  } else {
    mail.body = "この日には予約がありません。";
  }
  ShowText(kTo, mail.to);
  ShowText(kSubject, mail.subject);
  ShowText(kBody, mail.body);
}

std::string MailPreviewDialog::CellText(int row, int column) const {
  if (row < 0 || row >= static_cast<int>(rows_.size())) return {};
  const PreviewRow& shown = rows_[static_cast<std::size_t>(row)];
  const std::string_view time = GetText(shown.reservation.startTime);
  switch (column) {
    case 0:
      return std::string(time.substr(0, 2)) + ":" + std::string(time.size() > 2 ? time.substr(2) : "");
    case 1:
      return std::string(GetText(shown.reservation.patientCode));
    default:
      return shown.patientName;
  }
}

}  // namespace kova::mail
