#include "pickers/win32/query_patient_dlg.h"

#include <utility>

#include "window/input_mode.h"
#include "window/wide_text.h"

namespace kova::pickers {

using window::Box;
using window::Column;
using window::Row;
using window::Space;

namespace {

constexpr UINT kFocusArrived = WM_APP + 1;
constexpr UINT_PTR kSearchTimer = 1;
constexpr UINT kPauseAfterKey = 200;  // milliseconds

window::InputMode InputModeOf(SearchMode mode) {
  switch (mode) {
    case SearchMode::kKana:
      return window::InputMode::kHalfWidthKatakana;
    case SearchMode::kName:
      return window::InputMode::kHiragana;
    default:
      return window::InputMode::kOff;
  }
}

int ButtonOf(SearchMode mode) {
  switch (mode) {
    case SearchMode::kId:
      return CQueryPatientDlg::kById;
    case SearchMode::kKana:
      return CQueryPatientDlg::kByKana;
    case SearchMode::kName:
      return CQueryPatientDlg::kByName;
    default:
      return 0;
  }
}

}  // namespace

CQueryPatientDlg::CQueryPatientDlg(CKovaDBSys* db, SearchMode mode, std::string text, bool withMaidenName)
    : Dialog("該当患者リスト", {520, 520}),
      db_(db),
      mode_(mode),
      text_(std::move(text)),
      withMaidenName_(withMaidenName) {}

std::string CQueryPatientDlg::Run(HWND parent) { return RunModal(parent) == IDOK ? chosen_ : std::string(); }

void CQueryPatientDlg::AddControls() {
  AddFrame(kConditions, "検索条件");
  AddLabel(kTextLabel, "検索文字(&T)");
  AddEdit(kText);
  AddChoiceButton(kById, "ID(&I)", true);
  AddChoiceButton(kByKana, "フリガナ(&K)", false);
  AddChoiceButton(kByName, "氏名(&N)", false);
  AddButton(kSearch, "検索実行(&S)");
  AddLabel(kHitsLabel, "該当患者(&L)");
  AddOther(kHits, WC_LISTVIEWW, window::VirtualList::kStyle | WS_GROUP);
  AddLabel(kCount, "件数:  0000000");
  AddOkAndCancel();
}

Box CQueryPatientDlg::Arrange() const {
  const int gap = Dip(8);
  Box conditions =
      Column(gap, {Space(0, Dip(8)),
                   Row(gap, {Natural(kTextLabel), AtLeast(kText, {180, 0}).Stretch(), Natural(kSearch)}),
                   Row(gap, {AtLeast(kById, {80, 0}), AtLeast(kByKana, {80, 0}), AtLeast(kByName, {80, 0})})})
          .Margin(Dip(10))
          .Framed(kConditions);
  return Column(gap, {std::move(conditions), Natural(kHitsLabel), AtLeast(kHits, {400, 160}).Stretch(),
                      Row(gap, {AtLeast(kCount, {120, 0}), OkAndCancel().Stretch()})})
      .Margin(Dip(12));
}

void CQueryPatientDlg::OnStart() {
  list_.Attach(
      Item(kHits),
      {{"", 0},
       {"ＩＤ", Dip(80)},
       {"フリガナ", Dip(150)},
       {"氏名", Dip(180)},
       {"性別", Dip(50), LVCFMT_CENTER}},
      [this](int row, int column) { return CellText(row, column); }, LVS_EX_GRIDLINES);
  ShowText(kText, text_);
  KillTimer(Handle(), kSearchTimer);  // that was not typed
  Search();
  if (ButtonOf(mode_) != 0) CheckRadioButton(Handle(), kById, kByName, ButtonOf(mode_));
  SendMessageW(Item(kText), EM_SETSEL, 0, -1);
}

void CQueryPatientDlg::OnCommand(int control, int notification) {
  if (control == kText && notification == EN_CHANGE) {
    SetTimer(Handle(), kSearchTimer, kPauseAfterKey, nullptr);
  } else if (control == kText && notification == EN_SETFOCUS) {
    PostMessageW(Handle(), kFocusArrived, 0, 0);
  } else if (notification != BN_CLICKED) {
    return;
  } else if (control == kSearch) {
    Search();
  } else if (control == kById) {
    UseMode(SearchMode::kId);
  } else if (control == kByKana) {
    UseMode(SearchMode::kKana);
  } else if (control == kByName) {
    UseMode(SearchMode::kName);
  }
}

void CQueryPatientDlg::UseMode(SearchMode mode) {
  if (mode_ == mode) return;
  mode_ = mode;
  Search();
  Focus(kText);
}

LRESULT CQueryPatientDlg::OnNotify(const NMHDR& header) {
  if (list_.Answer(header)) return 1;
  if (header.idFrom != kHits) return 0;
  if (header.code == LVN_COLUMNCLICK) SortBy(reinterpret_cast<const NMLISTVIEW&>(header).iSubItem);
  if (header.code == NM_DBLCLK) OnOk();
  return 0;
}

void CQueryPatientDlg::OnTimer(UINT_PTR) { Search(); }

bool CQueryPatientDlg::OnMessage(UINT message, WPARAM, LPARAM, LRESULT&) {
  if (message != kFocusArrived) return false;
  if (GetFocus() == Item(kText)) window::UseInputMode(Item(kText), InputModeOf(mode_));
  return true;
}

bool CQueryPatientDlg::OnKey(HWND focus, WPARAM key, bool) {
  if (focus != Item(kText) || (key != VK_DOWN && key != VK_NEXT)) return false;
  GoToHits();
  return true;
}

void CQueryPatientDlg::GoToHits() {
  if (hits_.empty()) return;
  if (!list_.Selected()) list_.Select(0);
  SetFocus(Item(kHits));
}

void CQueryPatientDlg::Search() {
  KillTimer(Handle(), kSearchTimer);
  std::string text;
  std::wstring missing;
  // No patient has a name with characters that cannot be stored.
  const bool possible = window::Narrow(window::WindowText(Item(kText)), text, missing);
  const std::optional<std::string> selected = SelectedPatient();
  hits_ = possible ? QueryPatients(db_, mode_, text, withMaidenName_) : std::vector<PatientHit>();
  if (sortedBy_) SortHits(hits_, *sortedBy_, descending_);
  ShowHits(selected);
}

void CQueryPatientDlg::SortBy(int column) {
  if (column < static_cast<int>(HitColumn::kId)) return;
  const auto by = static_cast<HitColumn>(column);
  descending_ = sortedBy_ == by && !descending_;
  sortedBy_ = by;
  const std::optional<std::string> selected = SelectedPatient();
  SortHits(hits_, by, descending_);
  list_.ShowSorted(column, descending_);
  ShowHits(selected);
}

void CQueryPatientDlg::ShowHits(const std::optional<std::string>& selected) {
  list_.Select(std::nullopt);
  list_.SetRowCount(static_cast<int>(hits_.size()));
  for (std::size_t i = 0; selected && i < hits_.size(); ++i) {
    if (hits_[i].patientCode == *selected) list_.Select(static_cast<int>(i));
  }
  ShowText(kCount, "件数:  " + std::to_string(hits_.size()));
}

void CQueryPatientDlg::OnOk() {
  // A key may still wait for its pause.
  if (GetFocus() == Item(kText)) Search();
  std::optional<std::string> patient = SelectedPatient();
  if (!patient && hits_.size() == 1) patient = hits_[0].patientCode;
  if (!patient) {
    GoToHits();
    return;
  }
  chosen_ = *patient;
  Close(IDOK);
}

std::string CQueryPatientDlg::CellText(int row, int column) const {
  if (row < 0 || row >= static_cast<int>(hits_.size())) return {};
  const PatientHit& hit = hits_[static_cast<std::size_t>(row)];
  switch (static_cast<HitColumn>(column)) {
    case HitColumn::kId:
      return hit.patientCode;
    case HitColumn::kReading:
      return hit.reading;
    case HitColumn::kName:
      return hit.name;
    case HitColumn::kSex:
      return std::string(SexText(hit));
    default:
      return {};
  }
}

std::optional<std::string> CQueryPatientDlg::SelectedPatient() const {
  const std::optional<int> row = list_.Selected();
  if (!row || *row >= static_cast<int>(hits_.size())) return std::nullopt;
  return hits_[static_cast<std::size_t>(*row)].patientCode;
}

}  // namespace kova::pickers
