// The controls of a dialog: making them, their natural sizes, their texts.

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "window/dialog.h"
#include "window/message_prompts.h"
#include "window/wide_text.h"

namespace kova::window {
namespace {

bool IsClass(HWND item, const wchar_t* windowClass) {
  wchar_t name[32]{};
  GetClassNameW(item, name, 32);
  return lstrcmpiW(name, windowClass) == 0;
}

Font MessageFont(UINT dpi, int percent = 100, bool isBold = false) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  if (!SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi)) return nullptr;
  LOGFONTW& font = metrics.lfMessageFont;
  font.lfHeight = MulDiv(font.lfHeight, percent, 100);
  if (isBold) font.lfWeight = FW_BOLD;
  return Font(CreateFontIndirectW(&font));
}

}  // namespace

void Dialog::Add(int control, const wchar_t* windowClass, const std::wstring& text, DWORD style,
                 DWORD exStyle) {
  CreateWindowExW(exStyle, windowClass, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window_,
                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(control)), GetModuleHandleW(nullptr), nullptr);
}

// Buttons break their texts only when told to.
static DWORD LinesOf(std::string_view text) {
  return text.find('\n') == std::string_view::npos ? 0 : BS_MULTILINE;
}

void Dialog::AddLabel(int control, std::string_view text, DWORD style) {
  Add(control, WC_STATICW, Wide(text), style, 0);
}

void Dialog::AddButton(int control, std::string_view text) {
  const DWORD kind = control == IDOK ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
  Add(control, WC_BUTTONW, Wide(text), WS_TABSTOP | kind | LinesOf(text), 0);
}

void Dialog::AddOkAndCancel() {
  AddButton(IDOK, "OK");
  AddButton(IDCANCEL, "キャンセル");
}

void Dialog::AddCheckBox(int control, std::string_view text) {
  Add(control, WC_BUTTONW, Wide(text), WS_TABSTOP | BS_AUTOCHECKBOX | LinesOf(text), 0);
}

void Dialog::AddChoiceButton(int control, std::string_view text, bool first) {
  Add(control, WC_BUTTONW, Wide(text), (first ? WS_GROUP | WS_TABSTOP : 0) | BS_AUTORADIOBUTTON | BS_PUSHLIKE,
      0);
}

void Dialog::AddFrame(int control, std::string_view text) {
  // Transparent: the dialog paints what lies inside.
  if (text.empty()) {
    Add(control, WC_STATICW, {}, SS_ETCHEDFRAME, WS_EX_TRANSPARENT);
  } else {
    Add(control, WC_BUTTONW, Wide(text), BS_GROUPBOX | WS_GROUP, WS_EX_TRANSPARENT);
  }
}

void Dialog::AddEdit(int control, DWORD style) {
  Add(control, WC_EDITW, {}, WS_TABSTOP | ES_AUTOHSCROLL | style, WS_EX_CLIENTEDGE);
}

void Dialog::AddTextBox(int control, DWORD style) {
  Add(control, WC_EDITW, {},
      WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | ES_NOHIDESEL | style,
      WS_EX_CLIENTEDGE);
  SendMessageW(Item(control), EM_SETLIMITTEXT, 0x7FFFFFFE, 0);
}

void Dialog::AddComboBox(int control, DWORD style) {
  Add(control, WC_COMBOBOXW, {}, WS_TABSTOP | WS_VSCROLL | CBS_AUTOHSCROLL | style, 0);
}

void Dialog::AddOther(int control, const wchar_t* windowClass, DWORD style, DWORD exStyle) {
  Add(control, windowClass, {}, WS_TABSTOP | style, exStyle);
}

SIZE Dialog::TextSize(HWND item) const {
  HDC device = GetDC(window_);
  auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(item, WM_GETFONT, 0, 0));
  HGDIOBJ before = SelectObject(device, font == nullptr ? GetStockObject(DEFAULT_GUI_FONT) : font);
  std::wstring text = WindowText(item);
  if (text.empty()) text = L"あ";
  RECT room{};
  const bool plain = IsClass(item, WC_STATICW) && (GetWindowLongPtrW(item, GWL_STYLE) & SS_NOPREFIX) != 0;
  DrawTextW(device, text.c_str(), -1, &room, DT_CALCRECT | (plain ? DT_NOPREFIX : 0));
  SelectObject(device, before);
  ReleaseDC(window_, device);
  return {room.right, room.bottom};
}

int Dialog::LineHeight(int textHeight) const { return std::max(textHeight + Dip(9), Dip(22)); }

void Dialog::UseScale(UINT dpi) {
  dpi_ = dpi;
  natural_.clear();
  const BOOL isShown = IsWindowVisible(window_);
  const Font old = std::exchange(font_, MessageFont(dpi));
  for (HWND item = GetWindow(window_, GW_CHILD); item != nullptr; item = GetWindow(item, GW_HWNDNEXT)) {
    SendMessageW(item, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), isShown);
    // A combo box is as high as an edit control beside it.
    if (IsClass(item, WC_COMBOBOXW)) {
      const int field = LineHeight(static_cast<int>(TextSize(item).cy)) - Dip(6);
      SendMessageW(item, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), field);
    }
  }
  for (auto& [control, shown] : looks_) {
    Font before = std::exchange(shown.font, MessageFont(dpi, shown.look.textPercent, shown.look.isBold));
    SendMessageW(Item(control), WM_SETFONT, reinterpret_cast<WPARAM>(shown.font.get()), isShown);
  }
}

void Dialog::UseLook(int control, const Look& look) {
  Brush brush(look.background ? CreateSolidBrush(*look.background) : nullptr);
  looks_[control] = {look, nullptr, std::move(brush)};
}

HBRUSH Dialog::Colour(HWND item, HDC device) {
  const auto found = looks_.find(GetDlgCtrlID(item));
  if (found == looks_.end()) return nullptr;
  const Look& look = found->second.look;
  if (!look.text && !look.background) return nullptr;
  SetTextColor(device, look.text.value_or(GetSysColor(COLOR_WINDOWTEXT)));
  SetBkColor(device, look.background.value_or(GetSysColor(COLOR_3DFACE)));
  return look.background ? found->second.background.get() : GetSysColorBrush(COLOR_3DFACE);
}

// Opening a dialog asks several times, and measuring texts is most of what that takes.
Size Dialog::NaturalSize(int control) const {
  const auto known = natural_.find(control);
  return known != natural_.end() ? known->second : natural_[control] = MeasuredSize(control);
}

Size Dialog::MeasuredSize(int control) const {
  HWND item = Item(control);
  if (item == nullptr) return {};
  const SIZE text = TextSize(item);
  if (IsClass(item, WC_STATICW)) return {static_cast<int>(text.cx) + Dip(2), static_cast<int>(text.cy)};
  const int line = LineHeight(static_cast<int>(text.cy));
  if (IsClass(item, WC_BUTTONW)) {
    const bool box = (GetWindowLongPtrW(item, GWL_STYLE) & BS_TYPEMASK) == BS_AUTOCHECKBOX;
    return {static_cast<int>(text.cx) + Dip(24), box ? line : std::max(line, Dip(26))};
  }
  if (IsClass(item, WC_COMBOBOXW)) return {Dip(120), line};
  const bool oneLine = IsClass(item, WC_EDITW) && (GetWindowLongPtrW(item, GWL_STYLE) & ES_MULTILINE) == 0;
  return oneLine ? Size{Dip(120), line} : Size{Dip(160), Dip(80)};
}

Box Dialog::Natural(int control) const {
  const bool label = IsClass(Item(control), WC_STATICW);
  return Control(control, NaturalSize(control)).Aligned(label ? Across::kText : Across::kFill);
}

Box Dialog::AtLeast(int control, Size dips) const {
  Box box = Natural(control);
  box.least = {std::max(box.least.width, Dip(dips.width)), std::max(box.least.height, Dip(dips.height))};
  return box;
}

Box Dialog::OkAndCancel() const {
  return Row(Dip(8), {Space(0, 0).Stretch(), AtLeast(IDOK, {90, 0}), AtLeast(IDCANCEL, {90, 0})});
}

void Dialog::ShowText(int control, std::string_view text) {
  natural_.erase(control);
  SetWindowTextW(Item(control), WideForEdit(text).c_str());
  shown_[control] = {std::string(text), WindowText(Item(control))};
}

void Dialog::ShowIfChanged(int control, std::string_view text) {
  const auto before = shown_.find(control);
  if (before == shown_.end() || before->second.text != text) ShowText(control, text);
}

bool Dialog::TakeText(int control, std::string& text) {
  const std::wstring now = WindowText(Item(control));
  if (const auto before = shown_.find(control); before != shown_.end() && before->second.shown == now) {
    text = before->second.text;
    return true;
  }
  std::wstring missing;
  std::string taken;
  if (Narrow(now, taken, missing)) {
    text = std::move(taken);
    return true;
  }
  Focus(control);
  MessagePrompts(window_).Warn(L"次の文字は保存できません。別の文字に置き換えてください。\n\n" + missing);
  return false;
}

void Dialog::Enable(int control, bool enabled) { EnableWindow(Item(control), enabled ? TRUE : FALSE); }

void Dialog::Focus(int control) {
  SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(control)), TRUE);
}

}  // namespace kova::window
