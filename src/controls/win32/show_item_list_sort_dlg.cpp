#include "controls/win32/show_item_list_sort_dlg.h"

#include <windowsx.h>

#include <utility>

namespace kova::controls {

using window::Box;
using window::Column;
using window::Row;
using window::Space;

namespace {

constexpr int OptionControl(std::size_t option) {
  return CShowItemListSortDlg::kFirstOption + static_cast<int>(option);
}

}  // namespace

CShowItemListSortDlg::CShowItemListSortDlg(os::ApplicationProfile& profile, std::string_view section,
                                           std::vector<std::string> names)
    : Dialog("表示項目の設定", {0, 620}), profile_(profile), section_(section), names_(std::move(names)) {}

void CShowItemListSortDlg::AddControls() {
  AddLabel(kItemsLabel, "リストに表示したい項目をチェックしてください(&L)");
  AddOther(kItems, WC_LISTVIEWW, CheckList::kStyle);
  AddButton(kUp, "↑");
  AddButton(kDown, "↓");
  AddButton(kReset, "初期設定\nに戻す(&R)");
  AddButton(kAll, "全チェック(&A)");
  AddButton(kNone, "全解除(&N)");
  AddLabel(kIdNote, "( ※ IDのみ必須表示項目です )");
  AddLabel(kHint, "Alt+↑↓：順序　ドラッグでも移動できます");
  AddFrame(kOptions, "患者リスト");
  for (std::size_t i = 0; i < kPatientListOptions.size(); ++i)
    AddCheckBox(OptionControl(i),
                std::string(kPatientListOptions[i].caption) + "(&" + std::to_string(i + 1) + ")");
  AddLabel(kMemoryNote,
           "患者リストを開くときに、全患者の次回予約・未払い・\n"
           "連絡履歴の情報をメモリーに読み込みます。\n"
           "患者数が多いときに有効です。");
  AddOkAndCancel();
}

Box CShowItemListSortDlg::Arrange() const {
  Box buttons =
      Column(Dip(6), {AtLeast(kUp, {90, 30}), AtLeast(kDown, {90, 30}), Space(0, Dip(6)), Natural(kReset),
                      Space(0, Dip(6)), Natural(kAll), Natural(kNone), Space(0, 0).Stretch()});
  return Column(Dip(6), {Natural(kItemsLabel),
                         Row(Dip(8), {AtLeast(kItems, {310, 120}).Stretch(), std::move(buttons)}).Stretch(),
                         Natural(kIdNote), Natural(kHint), ArrangeOptions(), Space(0, Dip(2)), OkAndCancel()})
      .Margin(Dip(12));
}

// In two columns, and the option that a note explains with it below.
Box CShowItemListSortDlg::ArrangeOptions() const {
  const auto option = [&](std::size_t i) { return Natural(OptionControl(i)); };
  Box left = Column(Dip(2), {option(0), option(1), option(2), option(5)});
  Box right = Column(Dip(2), {option(3), option(4), option(7), Space(0, 0)});
  return Column(Dip(4), {Space(0, Dip(10)), Row(Dip(16), {std::move(left), std::move(right)}),
                         Row(Dip(8), {option(6), Natural(kMemoryNote)})})
      .Margin(Dip(10))
      .Framed(kOptions);
}

void CShowItemListSortDlg::OnStart() {
  list_.Attach(Item(kItems), Dip(280), LVS_EX_GRIDLINES);
  rows_ = RowsOf(ReadColumns(profile_, section_, static_cast<int>(names_.size())));
  ShowRows();
  if (!rows_.empty()) list_.Select(0);
  ShowChoices(ReadPatientListChoices(profile_));
  Focus(kItems);
}

void CShowItemListSortDlg::ShowRows() {
  std::vector<CheckList::RowText> rows;
  for (const ColumnRow& row : rows_)
    rows.push_back({names_[static_cast<std::size_t>(row.column)], row.isShown});
  list_.Show(rows);
}

void CShowItemListSortDlg::TakeChecks() {
  for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i].isShown = list_.IsChecked(static_cast<int>(i));
}

void CShowItemListSortDlg::Move(int from, int to) {
  TakeChecks();
  const int at = MoveRow(rows_, from, to);
  ShowRows();
  list_.Select(at);
  if (drag_) drag_->row = at;
}

void CShowItemListSortDlg::MoveSelected(int step) {
  if (const auto row = list_.Selected()) Move(*row, *row + step);
}

void CShowItemListSortDlg::Reset() {
  TakeChecks();
  ResetOrder(rows_);
  ShowRows();
  if (!rows_.empty()) list_.Select(0);
  ShowChoices(DefaultPatientListChoices());
}

void CShowItemListSortDlg::ShowChoices(const PatientListChoices& choices) {
  for (std::size_t i = 0; i < choices.size(); ++i)
    CheckDlgButton(Handle(), OptionControl(i), choices[i] ? BST_CHECKED : BST_UNCHECKED);
}

PatientListChoices CShowItemListSortDlg::Choices() const {
  PatientListChoices choices{};
  for (std::size_t i = 0; i < choices.size(); ++i)
    choices[i] = IsDlgButtonChecked(Handle(), OptionControl(i)) == BST_CHECKED;
  return choices;
}

void CShowItemListSortDlg::OnCommand(int control, int notification) {
  if (notification != BN_CLICKED) return;
  if (control == kUp || control == kDown) {
    MoveSelected(control == kUp ? -1 : 1);
  } else if (control == kReset) {
    Reset();
  } else if (control == kAll || control == kNone) {
    list_.CheckAll(control == kAll);
  }
}

bool CShowItemListSortDlg::OnKey(HWND focus, WPARAM key, bool alt) {
  if (drag_ && key == VK_ESCAPE) {
    EndDrag(false);
    return true;
  }
  if (!alt || focus != Item(kItems) || (key != VK_UP && key != VK_DOWN)) return false;
  MoveSelected(key == VK_UP ? -1 : 1);
  return true;
}

// ---- Dragging: the row goes along with the mouse at once.

LRESULT CShowItemListSortDlg::OnNotify(const NMHDR& header) {
  if (header.idFrom == kItems && header.code == LVN_BEGINDRAG)
    BeginDrag(reinterpret_cast<const NMLISTVIEW&>(header).iItem);
  return 0;
}

bool CShowItemListSortDlg::OnMessage(UINT message, WPARAM, LPARAM lParam, LRESULT&) {
  if (!drag_) return false;
  POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  ClientToScreen(Handle(), &at);
  if (message == WM_MOUSEMOVE) {
    DragTo(at);
  } else if (message == WM_LBUTTONUP) {
    DragTo(at);
    EndDrag(true);
  } else if (message == WM_CAPTURECHANGED) {
    EndDrag(true);
  } else {
    return false;
  }
  return true;
}

void CShowItemListSortDlg::BeginDrag(int row) {
  TakeChecks();
  drag_ = Drag{row, rows_};
  SetCapture(Handle());
}

void CShowItemListSortDlg::DragTo(POINT onScreen) {
  const int row = list_.RowAt(onScreen);
  if (row != drag_->row) Move(drag_->row, row);
}

void CShowItemListSortDlg::EndDrag(bool keep) {
  const Drag ended = *std::exchange(drag_, std::nullopt);
  ReleaseCapture();
  if (keep) return;
  rows_ = ended.before;
  ShowRows();
}

// The widths are those that the profile has by now: the list may have been used meanwhile.
void CShowItemListSortDlg::OnOk() {
  TakeChecks();
  const auto saved = ReadColumns(profile_, section_, static_cast<int>(names_.size()));
  if (StoreColumns(profile_, section_, Rearranged(saved, rows_), Choices())) {
    Close(IDOK);
  } else {
    Inform("表示項目の設定を保存できませんでした。");
  }
}

}  // namespace kova::controls
