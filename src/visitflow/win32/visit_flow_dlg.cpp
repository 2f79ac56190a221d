#include "visitflow/win32/visit_flow_dlg.h"

#include <windowsx.h>

#include <algorithm>

#include "window/wide_text.h"

namespace kova::visitflow {

using window::Box;
using window::Column;
using window::Row;
using window::Size;
using window::Space;

namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kPeriod = 3000;  // milliseconds
constexpr int kMargin = 4;
constexpr int kColumnWidth = 170;
constexpr std::string_view kSection = "KOVACOM";

constexpr int IdOf(BoardButton button) { return static_cast<int>(button); }

/// Stages that have room beside each other at first; the others are scrolled to.
int StagesAtOnce(std::size_t stages) { return std::min(static_cast<int>(stages), 4); }

/// A list of that many columns, with its frame and scroll bar.
int ListWidth(int columns) { return columns * kColumnWidth + 24; }

std::string DateText(const std::string& date) {
  const std::string_view text(date);
  return date.size() < 8 ? date
                         : std::string(text.substr(0, 4)) + "/" + std::string(text.substr(4, 2)) + "/" +
                               std::string(text.substr(6, 2));
}

BoardDesk With(BoardDesk desk, foundation::Prompts& prompts) {
  return {desk.db,
          desk.settings,
          prompts,
          std::move(desk.sendMails),
          std::move(desk.clock),
          std::move(desk.reconnect)};
}

}  // namespace

CVisitFlowDlg::CVisitFlowDlg(const BoardDesk& desk, std::string date)
    : Dialog("来院の流れ", {0, 0}), desk_(desk), session_(With(desk, prompts_), std::move(date)) {
  session_.Open();
  stages_ = session_.Stages();
  Prefer({0, 560});
}

void CVisitFlowDlg::AddControls() {
  AddFrame(kStrip, "");
  AddLabel(kDate, "0000/00/00");
  AddLabel(kBeforeCount, "来院前：0000 人(&B)");
  AddOther(kBeforeList, WC_LISTVIEWW, BoardListView::kStyle);
  AddButton(IdOf(BoardButton::kBeforeToNext), ">>");
  AddButton(IdOf(BoardButton::kStageToBefore), "<<");
  AddLabel(kStagedCount, "進行中：0000 人(&S)");
  AddOther(kStagedList, WC_LISTVIEWW, BoardListView::kStyle);
  AddButton(IdOf(BoardButton::kStageBack), "<<");
  AddButton(IdOf(BoardButton::kStageForward), ">>");
  AddButton(IdOf(BoardButton::kStageToFinished), ">>");
  AddButton(IdOf(BoardButton::kFinishedBack), "<<");
  AddLabel(kFinishedCount, "会計終了：0000 人(&F)");
  AddOther(kFinishedList, WC_LISTVIEWW, BoardListView::kStyle);
  AddButton(kRefresh, "更新(&R)");
  AddCheckBox(kAuto, "自動(&A)");
  AddLabel(kStatus, " ");
  AddButton(kClose, "閉じる(&C)");
  ShowStageControls();
}

void CVisitFlowDlg::ShowStageControls() {
  for (const int control :
       {IdOf(BoardButton::kStageToBefore), int{kStagedCount}, int{kStagedList}, IdOf(BoardButton::kStageBack),
        IdOf(BoardButton::kStageForward), IdOf(BoardButton::kStageToFinished)})
    ShowWindow(Item(control), stages_.empty() ? SW_HIDE : SW_SHOWNA);
}

Box CVisitFlowDlg::ListBox(int count, int list, int columns) const {
  return Column(Dip(kMargin), {Natural(count), AtLeast(list, {ListWidth(columns), 200}).Stretch()});
}

Box CVisitFlowDlg::Arrange() const {
  const int gap = Dip(kMargin);
  const auto button = [&](BoardButton id) { return AtLeast(IdOf(id), {40, 28}); };
  const auto between = [&](BoardButton upper, BoardButton lower) {
    return Column(gap, {Space(0, 0).Stretch(), button(upper), button(lower), Space(0, 0).Stretch()});
  };
  Box before = ListBox(kBeforeCount, kBeforeList, 1).Stretch();
  Box finished = ListBox(kFinishedCount, kFinishedList, 1).Stretch();
  Box lists;
  if (stages_.empty()) {
    lists = Row(gap, {std::move(before), between(BoardButton::kBeforeToNext, BoardButton::kFinishedBack),
                      std::move(finished)});
  } else {
    const int shown = StagesAtOnce(stages_.size());
    Box staged = Column(gap, {ListBox(kStagedCount, kStagedList, shown).Stretch(),
                              Row(gap, {Space(0, 0).Stretch(), button(BoardButton::kStageBack),
                                        button(BoardButton::kStageForward), Space(0, 0).Stretch()})})
                     .Stretch(shown);
    lists = Row(gap, {std::move(before), between(BoardButton::kBeforeToNext, BoardButton::kStageToBefore),
                      std::move(staged), between(BoardButton::kStageToFinished, BoardButton::kFinishedBack),
                      std::move(finished)});
  }
  Box strip = Row(gap, {Natural(kDate), Space(0, Dip(22)).Stretch()}).Margin(gap).Framed(kStrip);
  Box foot =
      Row(Dip(8), {Natural(kRefresh), Natural(kAuto), Natural(kStatus).Stretch(), AtLeast(kClose, {90, 0})});
  return Column(gap, {std::move(strip), std::move(lists).Stretch(), std::move(foot)}).Margin(gap);
}

Size CVisitFlowDlg::SmallestFrame() const { return first_.width > 0 ? first_ : Dialog::SmallestFrame(); }

void CVisitFlowDlg::OnStart() {
  AddColumns();
  ShowText(kDate, DateText(session_.Date()));
  const RECT frame = Frame();
  first_ = {frame.right - frame.left, frame.bottom - frame.top};
  UseStoredSize();
  Show();
  ShowEnabled();
  if (desk_.settings.Open().GetInt(kSection, "VisitFlowAutoUpdate", 0) != 0) {
    CheckDlgButton(Handle(), kAuto, BST_CHECKED);
    SetTimer(Handle(), kTimer, kPeriod, nullptr);
  }
  Focus(kBeforeList);
}

void CVisitFlowDlg::AddColumns() {
  before_.Attach(Item(kBeforeList), {{"来院前", Dip(kColumnWidth)}});
  finished_.Attach(Item(kFinishedList), {{"会計終了", Dip(kColumnWidth)}});
  AddStages();
}

void CVisitFlowDlg::AddStages() {
  std::vector<window::ListColumn> columns;
  for (const Stage& stage : stages_) columns.push_back({stage.name, Dip(kColumnWidth)});
  staged_.Attach(Item(kStagedList), columns);
}

// They could not be read when the window was opened.
void CVisitFlowDlg::UseStages() {
  stages_ = session_.Stages();
  AddStages();
  ShowStageControls();
  first_ = PreferredFrame();
  RECT frame = Frame();
  SetWindowPos(Handle(), nullptr, 0, 0, std::max<int>(first_.width, frame.right - frame.left),
               std::max<int>(first_.height, frame.bottom - frame.top), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  ArrangeAgain();
}

RECT CVisitFlowDlg::Frame() const {
  RECT frame{};
  GetWindowRect(Handle(), &frame);
  return frame;
}

void CVisitFlowDlg::UseStoredSize() {
  const foundation::SettingsSnapshot settings = desk_.settings.Open();
  int width = settings.GetInt(kSection, "VisitFlowWindowWidth", first_.width);
  int height = settings.GetInt(kSection, "VisitFlowWindowHeight", first_.height);
  if (width == 0 || height == 0) return;
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  // A size stored on a larger screen must not hide the buttons.
  width = std::clamp(width, first_.width, std::max<int>(first_.width, work.right - work.left));
  height = std::clamp(height, first_.height, std::max<int>(first_.height, work.bottom - work.top));
  const int left = GetSystemMetrics(SM_CXSCREEN) / 2 - width / 2;
  const int top = GetSystemMetrics(SM_CYSCREEN) / 2 - height / 2;
  SetWindowPos(Handle(), nullptr, std::max(left, 0), std::max(top, 0), width, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void CVisitFlowDlg::OnCommand(int control, int notification) {
  if (notification != BN_CLICKED) return;
  if (control == kRefresh) {
    session_.Refresh();
    Show();
  } else if (control == kAuto) {
    OnAuto();
  } else if (IsBoardButton(control)) {
    const auto button = static_cast<BoardButton>(control);
    const BoardList from = button == BoardButton::kBeforeToNext   ? BoardList::kBefore
                           : button == BoardButton::kFinishedBack ? BoardList::kFinished
                                                                  : BoardList::kStaged;
    Move(button, from);
  }
}

void CVisitFlowDlg::OnAuto() {
  const bool checked = IsDlgButtonChecked(Handle(), kAuto) == BST_CHECKED;
  (void)desk_.settings.SetInt(kSection, "VisitFlowAutoUpdate", checked ? 1 : 0);
  // Unchecking lets the next tick end the ticking: deliberate.
  if (checked) SetTimer(Handle(), kTimer, kPeriod, nullptr);
}

void CVisitFlowDlg::OnTimer(UINT_PTR) {
  KillTimer(Handle(), kTimer);
  session_.Tick();
  Show();
  if (IsDlgButtonChecked(Handle(), kAuto) == BST_CHECKED) SetTimer(Handle(), kTimer, kPeriod, nullptr);
}

void CVisitFlowDlg::Move(BoardButton button, BoardList from) {
  const std::vector<std::string> keys = View(from).SelectedKeys();
  if (keys.empty()) return;
  session_.Move(button, keys, [this] {
    Show();
    UpdateWindow(Handle());
  });
  Show();
  ShowEnabled();
}

void CVisitFlowDlg::Show() {
  if (stages_ != session_.Stages()) UseStages();
  const Board& board = session_.Shown();
  before_.Show(board.before);
  staged_.Show(board.staged);
  finished_.Show(board.finished);
  const auto count = [&](int label, std::string_view name, std::size_t rows, std::string_view key) {
    const std::string text = std::string(name) + "：" + std::to_string(rows) + " 人" + std::string(key);
    ShowIfChanged(label, text);
  };
  count(kBeforeCount, "来院前", board.before.size(), "(&B)");
  count(kStagedCount, "進行中", board.staged.size(), "(&S)");
  count(kFinishedCount, "会計終了", board.finished.size(), "(&F)");
  ShowIfChanged(kStatus, session_.StatusLine());
}

void CVisitFlowDlg::ShowEnabled() {
  const EnabledButtons enabled = EnabledBy(!before_.SelectedKeys().empty(), !staged_.SelectedKeys().empty(),
                                           !finished_.SelectedKeys().empty());
  Enable(IdOf(BoardButton::kBeforeToNext), enabled.beforeToNext);
  for (const BoardButton button : {BoardButton::kStageToBefore, BoardButton::kStageForward,
                                   BoardButton::kStageBack, BoardButton::kStageToFinished})
    Enable(IdOf(button), enabled.stageMoves);
  Enable(IdOf(BoardButton::kFinishedBack), enabled.finishedBack);
}

LRESULT CVisitFlowDlg::OnNotify(const NMHDR& header) {
  const auto list = ListOf(header.hwndFrom);
  if (!list) return 0;
  if (View(*list).Answer(header)) return 1;
  if (header.code == NM_SETFOCUS) {
    for (const BoardList other : {BoardList::kBefore, BoardList::kStaged, BoardList::kFinished}) {
      if (other != *list) View(other).SelectNone();
    }
  }
  if (header.code == LVN_BEGINDRAG) BeginDrag(reinterpret_cast<const NMLISTVIEW&>(header));
  if (header.code == LVN_ITEMCHANGED || header.code == LVN_ODSTATECHANGED || header.code == NM_SETFOCUS)
    ShowEnabled();
  return 0;
}

bool CVisitFlowDlg::OnKey(HWND focus, WPARAM key, bool alt) {
  if (drag_ && key == VK_ESCAPE) {
    ReleaseCapture();
    return true;
  }
  if (key == VK_F5) {
    OnCommand(kRefresh, BN_CLICKED);
    return true;
  }
  const auto list = ListOf(focus);
  if (!alt || !list || (key != VK_LEFT && key != VK_RIGHT)) return false;
  if (const auto button = ButtonForKey(*list, key == VK_RIGHT)) Move(*button, *list);
  return true;
}

void CVisitFlowDlg::BeginDrag(const NMLISTVIEW& notice) {
  const auto list = ListOf(notice.hdr.hwndFrom);
  const BoardRow* row = list ? View(*list).RowAt(notice.iItem) : nullptr;
  if (row == nullptr) return;
  drag_ = Drag{*list, row->stage};
  SetCapture(Handle());
}

bool CVisitFlowDlg::OnMessage(UINT message, WPARAM, LPARAM lParam, LRESULT&) {
  if (!drag_) return false;
  const POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  if (message == WM_MOUSEMOVE) {
    SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(DropButton(at) ? IDC_HAND : IDC_NO)));
  } else if (message == WM_LBUTTONUP) {
    Drop(at);
  } else if (message == WM_CAPTURECHANGED) {
    drag_.reset();
  } else {
    return false;
  }
  return true;
}

void CVisitFlowDlg::Drop(POINT at) {
  const auto button = DropButton(at);
  const BoardList from = drag_->from;
  drag_.reset();
  ReleaseCapture();
  if (button) Move(*button, from);
}

std::optional<BoardButton> CVisitFlowDlg::DropButton(POINT at) const {
  const auto to = ListOf(ChildWindowFromPointEx(Handle(), at, CWP_SKIPINVISIBLE));
  if (!to) return std::nullopt;
  int stage = -1;
  if (*to == BoardList::kStaged) {
    MapWindowPoints(Handle(), staged_.Window(), &at, 1);
    HWND header = ListView_GetHeader(staged_.Window());
    HDHITTESTINFO hit{};
    hit.pt = {at.x + GetScrollPos(staged_.Window(), SB_HORZ), 4};
    SendMessageW(header, HDM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    stage = hit.iItem;
  }
  return ButtonForDrop(drag_->from, drag_->stage, *to, stage, !stages_.empty());
}

BoardListView& CVisitFlowDlg::View(BoardList list) {
  if (list == BoardList::kBefore) return before_;
  return list == BoardList::kStaged ? staged_ : finished_;
}

std::optional<BoardList> CVisitFlowDlg::ListOf(HWND window) const {
  if (window == nullptr) return std::nullopt;
  if (window == before_.Window()) return BoardList::kBefore;
  if (window == staged_.Window()) return BoardList::kStaged;
  return window == finished_.Window() ? std::optional(BoardList::kFinished) : std::nullopt;
}

void CVisitFlowDlg::OnCancel() {
  const RECT frame = Frame();
  (void)desk_.settings.SetInt(kSection, "VisitFlowWindowWidth", frame.right - frame.left);
  (void)desk_.settings.SetInt(kSection, "VisitFlowWindowHeight", frame.bottom - frame.top);
  Close(IDCANCEL);
}

}  // namespace kova::visitflow
