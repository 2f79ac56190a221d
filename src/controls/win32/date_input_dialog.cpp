#include "controls/win32/date_input_dialog.h"

#include <windowsx.h>

#include <utility>

#include "window/input_mode.h"
#include "window/wide_text.h"

namespace kova::controls {

using window::Box;
using window::Row;
using window::Space;

namespace {

constexpr UINT kSettle = WM_APP + 1;  // who has focus and mouse has changed
constexpr int kLongestText = 40;      // a whole date, with room for blanks

std::optional<DateField> FieldOf(int control) {
  switch (control) {
    case DateInputDialog::kYear:
      return DateField::kYear;
    case DateInputDialog::kMonth:
      return DateField::kMonth;
    case DateInputDialog::kDay:
      return DateField::kDay;
    default:
      return std::nullopt;
  }
}

window::Rect RectOf(const RECT& rect) {
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

bool Contains(HWND window, POINT onScreen) {
  RECT place{};
  return GetWindowRect(window, &place) && PtInRect(&place, onScreen);
}

}  // namespace

DateInputDialog::DateInputDialog(const WesternDate& date, HWND cover, const std::optional<WesternDate>& today)
    : Dialog("日付入力", {0, 0}), date_(date), cover_(cover), today_(today) {}

void DateInputDialog::AddControls() {
  RECT over{};  // at once on the screen that it will be on, so that its scale counts
  if (cover_ != nullptr && GetWindowRect(cover_, &over))
    SetWindowPos(Handle(), nullptr, over.left, over.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  AddLabel(kEraLabel, "元号");  // unseen: the list says it itself
  AddComboBox(kEra, CBS_DROPDOWNLIST);
  AddLabel(kYearLabel, "年");
  AddEdit(kYear, ES_RIGHT);
  AddLabel(kMonthLabel, "月");
  AddEdit(kMonth, ES_RIGHT);
  AddLabel(kDayLabel, "日");
  AddEdit(kDay, ES_RIGHT);
  AddLabel(kNote, "元号の期間外");  // the longest, to be measured
}

Box DateInputDialog::Arrange() const {
  const auto field = [&](int control, int width) {
    return window::Control(control, {Dip(width), Natural(control).least.height});
  };
  Box fields = Row(Dip(3), {window::Control(kEraLabel, {}), field(kEra, 64), field(kYear, 44),
                            Natural(kYearLabel), field(kMonth, 28), Natural(kMonthLabel), field(kDay, 28),
                            Natural(kDayLabel), Space(Dip(2), 0), Natural(kNote).Stretch()});
  // In the middle of a rectangle that is higher.
  return window::Column(0, {Space(0, 0).Stretch(), std::move(fields), Space(0, 0).Stretch()}).Margin(Dip(1));
}

window::Rect DateInputDialog::FirstPlace() const {
  RECT over{};
  if (cover_ == nullptr || !GetWindowRect(cover_, &over)) return Dialog::FirstPlace();
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromRect(&over, MONITOR_DEFAULTTONEAREST), &monitor);
  return window::Covering(RectOf(over), PreferredFrame(), RectOf(monitor.rcWork));
}

void DateInputDialog::OnStart() {
  for (const Era& era : kEras)
    SendMessageW(Item(kEra), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(window::Wide(era.name).c_str()));
  for (const int control : {kYear, kMonth, kDay})
    SendMessageW(Item(control), EM_SETLIMITTEXT, kLongestText, 0);
  Show(ToEra(date_));
  Focus(kYear);
}

// ---- The fields and the date.

void DateInputDialog::Show(const EraDate& date) {
  filling_ = true;
  SendMessageW(Item(kEra), CB_SETCURSEL, static_cast<WPARAM>(date.era), 0);
  ShowPart(kYear, date.year);
  ShowPart(kMonth, date.month);
  ShowPart(kDay, date.day);
  filling_ = false;
  yearLength_ = TextOf(kYear).size();
  ShowNote();
}

void DateInputDialog::ShowPart(int control, int number) {
  ShowText(control, number == 0 ? "" : std::to_string(number));
}

// Characters that cannot be stored belong to no number and no date.
std::string DateInputDialog::TextOf(int control) const {
  std::string text;
  std::wstring missing;
  (void)window::Narrow(window::WindowText(Item(control)), text, missing);
  return text;
}

int DateInputDialog::SelectedEra() const {
  return static_cast<int>(SendMessageW(Item(kEra), CB_GETCURSEL, 0, 0));  // CB_ERR is kNoEra
}

// A date that was typed as a whole counts from the moment that it can be read.
EraDate DateInputDialog::Shown() const {
  const std::string year = TextOf(kYear);
  const EraDate fields{SelectedEra(), NumberInField(year), NumberInField(TextOf(kMonth)),
                       NumberInField(TextOf(kDay))};
  EraDate typed = ReadDate(year).value_or(fields);
  if (typed.month == 0) typed.month = fields.month;  // an era and its year alone
  if (typed.day == 0) typed.day = fields.day;
  return typed;
}

void DateInputDialog::ShowNote() { ShowIfChanged(kNote, NoteOf(Shown(), today_)); }

// What was pasted or committed in one piece is spread at once; what is typed character by character may go
// on, and waits until the field is left.
void DateInputDialog::OnYearChange() {
  const std::string text = TextOf(kYear);
  const bool inOnePiece = text.size() > yearLength_ + 2;
  yearLength_ = text.size();
  const auto date = inOnePiece ? ReadDate(text) : std::nullopt;
  if (date && date->day != 0) SpreadTypedDate();
}

void DateInputDialog::SpreadTypedDate() {
  if (!ReadDate(TextOf(kYear))) return;
  Show(Shown());
  if (GetFocus() == Item(kYear)) SendMessageW(Item(kYear), EM_SETSEL, 0, -1);
}

void DateInputDialog::OnOk() {
  date_ = ToWestern(Shown());
  Close(IDOK);
}

void DateInputDialog::OnCommand(int control, int notification) {
  if (filling_) return;
  if (control == kEra) {
    if (notification == CBN_DROPDOWN) ReleaseCapture();  // the mouse belongs to the list while it is open
    if (notification == CBN_CLOSEUP) PostMessageW(Handle(), kSettle, 0, 0);
    if (notification == CBN_SELCHANGE) ShowNote();
  } else if (notification == EN_CHANGE) {
    if (control == kYear) OnYearChange();
    ShowNote();
  } else if (notification == EN_SETFOCUS) {
    PostMessageW(Handle(), kSettle, 0, 0);
  } else if (notification == EN_KILLFOCUS && control == kYear) {
    SpreadTypedDate();
  }
}

// ---- The keyboard.

bool DateInputDialog::OnKey(HWND focus, WPARAM key, bool alt) {
  if (alt) return false;
  const int control = GetDlgCtrlID(focus);
  if (key == VK_RETURN && control != kDay) {
    SendMessageW(Item(kEra), CB_SHOWDROPDOWN, FALSE, 0);
    SendMessageW(Handle(), WM_NEXTDLGCTL, 0, FALSE);
    return true;
  }
  if (key == VK_UP || key == VK_DOWN) return CountOn(focus, key == VK_UP ? 1 : -1);
  return control == kEra && TakeEraLetter(key);
}

bool DateInputDialog::TakeEraLetter(WPARAM key) {
  const auto era = key >= 'A' && key <= 'Z' ? FindEra(std::string(1, static_cast<char>(key))) : std::nullopt;
  if (!era) return false;
  SendMessageW(Item(kEra), CB_SETCURSEL, static_cast<WPARAM>(*era), 0);
  ShowNote();
  return true;
}

bool DateInputDialog::CountOn(HWND focus, int step) {
  const int control = GetDlgCtrlID(focus);
  const auto field = FieldOf(control);
  if (!field) return false;
  SpreadTypedDate();
  ShowPart(control, CountedOn(*field, NumberInField(TextOf(control)), step));
  SendMessageW(focus, EM_SETSEL, 0, -1);
  return true;
}

// ---- The mouse and the focus.

bool DateInputDialog::OnMessage(UINT message, WPARAM, LPARAM lParam, LRESULT&) {
  switch (message) {
    case WM_SETFOCUS:
      Focus(kYear);
      return true;
    case WM_ACTIVATE:
    case WM_CAPTURECHANGED:
      PostMessageW(Handle(), kSettle, 0, 0);
      return false;
    case kSettle:
      if (FieldOf(GetDlgCtrlID(GetFocus()))) window::UseInputMode(GetFocus(), window::InputMode::kOff);
      HoldMouse();
      return true;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN: {
      POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      ClientToScreen(Handle(), &at);
      OnClick(at);
      return true;
    }
    default:
      return false;
  }
}

void DateInputDialog::HoldMouse() {
  const bool listIsOpen = SendMessageW(Item(kEra), CB_GETDROPPEDSTATE, 0, 0) != 0;
  if (GetActiveWindow() == Handle() && !listIsOpen && GetCapture() == nullptr) SetCapture(Handle());
}

void DateInputDialog::OnClick(POINT at) {
  if (!Contains(Handle(), at)) {
    ReleaseCapture();
    OnCancel();
    return;
  }
  for (const int control : {kYear, kMonth, kDay}) {
    if (Contains(Item(control), at)) Focus(control);
  }
  if (Contains(Item(kEra), at)) {
    Focus(kYear);
    SendMessageW(Item(kEra), CB_SHOWDROPDOWN, TRUE, 0);
  }
}

}  // namespace kova::controls
