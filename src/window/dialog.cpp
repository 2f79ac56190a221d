#include "window/dialog.h"

#include <windows.h>
#include <commctrl.h>
#include <imm.h>

#include <utility>

#include "window/message_prompts.h"
#include "window/themed.h"
#include "window/wide_text.h"

namespace kova::window {
namespace {

constexpr wchar_t kObject[] = L"KovaDialog";  // window property: the Dialog

// The dialog itself: no controls, no font of the template's.
struct EmptyTemplate {
  DLGTEMPLATE head{};
  WORD menu = 0;
  WORD windowClass = 0;
  WORD title = 0;
};

Rect RectOf(const RECT& rect) {
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

/// The host may be any age: whatever it told the system of itself, the library's windows are drawn sharply.
class SharpThread {
 public:
  SharpThread() : before_(SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2)) {}
  SharpThread(const SharpThread&) = delete;
  SharpThread& operator=(const SharpThread&) = delete;
  ~SharpThread() {
    if (before_ != nullptr) SetThreadDpiAwarenessContext(before_);
  }

 private:
  DPI_AWARENESS_CONTEXT before_;
};

// Not every version of the control knows Ctrl+A by itself.
bool SelectsAll(HWND focus, WPARAM key) {
  wchar_t name[8]{};
  GetClassNameW(focus, name, 8);
  if (key != 'A' || GetKeyState(VK_CONTROL) >= 0 || lstrcmpiW(name, WC_EDITW) != 0) return false;
  SendMessageW(focus, EM_SETSEL, 0, -1);
  return true;
}

/// Lets a procedure see this thread's messages in modal loops before they are dispatched.
class MessageHook {
 public:
  explicit MessageHook(HOOKPROC procedure)
      : hook_(SetWindowsHookExW(WH_MSGFILTER, procedure, nullptr, GetCurrentThreadId())) {}
  MessageHook(const MessageHook&) = delete;
  MessageHook& operator=(const MessageHook&) = delete;
  ~MessageHook() {
    if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
  }

 private:
  HHOOK hook_;
};

}  // namespace

std::wstring WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

Dialog::Dialog(std::string_view title, Size preferred) : title_(Wide(title)), preferred_(preferred) {}

INT_PTR Dialog::RunModal(HWND parent) {
  const SharpThread sharp;
  const Themed themed;
  const MessageHook keys(&Dialog::KeyHook);
  owner_ = parent == nullptr ? GetActiveWindow() : GetAncestor(parent, GA_ROOT);
  EmptyTemplate empty;
  const DWORD frame = HasFrame() ? WS_CAPTION | WS_SYSMENU | WS_THICKFRAME : WS_BORDER;
  empty.head.style = WS_POPUP | WS_CLIPCHILDREN | DS_3DLOOK | frame;
  empty.head.dwExtendedStyle = WS_EX_CONTROLPARENT | (HasFrame() ? WS_EX_DLGMODALFRAME : 0);
  const INT_PTR result = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &empty.head, owner_,
                                                 &Dialog::Procedure, reinterpret_cast<LPARAM>(this));
  window_ = nullptr;
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  return result == -1 ? IDCANCEL : result;
}

void Dialog::Close(INT_PTR result) {
  closing_ = true;
  EndDialog(window_, result);
}

LRESULT CALLBACK Dialog::KeyHook(int code, WPARAM wParam, LPARAM message) noexcept {
  const MSG& sent = *reinterpret_cast<const MSG*>(message);
  const bool key = code == MSGF_DIALOGBOX && (sent.message == WM_KEYDOWN || sent.message == WM_SYSKEYDOWN);
  auto* dialog = key ? static_cast<Dialog*>(GetPropW(GetAncestor(sent.hwnd, GA_ROOT), kObject)) : nullptr;
  try {
    if (dialog != nullptr && !dialog->closing_ &&
        (dialog->OnKey(sent.hwnd, sent.wParam, sent.message == WM_SYSKEYDOWN) ||
         SelectsAll(sent.hwnd, sent.wParam)))
      return 1;
  } catch (...) {
    dialog->Keep(std::current_exception());
    return 1;
  }
  return CallNextHookEx(nullptr, code, wParam, message);
}

void Dialog::Keep(std::exception_ptr thrown) noexcept {
  if (!thrown_) thrown_ = std::move(thrown);
  Close(IDCANCEL);
}

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* dialog = static_cast<Dialog*>(GetPropW(window, kObject));
  if (message == WM_INITDIALOG) {
    dialog = reinterpret_cast<Dialog*>(lParam);
    dialog->window_ = window;
    SetPropW(window, kObject, dialog);
  }
  if (dialog == nullptr) return FALSE;
  if (message == WM_NCDESTROY) {
    RemovePropW(window, kObject);
    return FALSE;
  }
  if (message == WM_CTLCOLORSTATIC)
    return reinterpret_cast<INT_PTR>(
        dialog->Colour(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam)));
  if (dialog->closing_ && message != WM_DESTROY) return FALSE;
  // An exception must not cross the system's code: it is kept and goes on from RunModal.
  try {
    LRESULT result = 0;
    if (!dialog->Handle(message, wParam, lParam, result)) return FALSE;
    SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
    return message == WM_INITDIALOG ? FALSE : TRUE;  // the focus is where Start put it
  } catch (...) {
    dialog->Keep(std::current_exception());
    return TRUE;
  }
}

bool Dialog::Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_INITDIALOG:
      Start();
      return true;
    case WM_COMMAND:
      Command(LOWORD(wParam), HIWORD(wParam));
      return true;
    case WM_CLOSE:  // of the close box, and of Escape in a text box
      if (!IsComposing()) OnCancel();
      return true;
    case WM_NOTIFY:
      result = OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
      return result != 0;
    case WM_TIMER:
      OnTimer(wParam);
      return true;
    case WM_SIZE:
      PlaceControls();
      return true;
    case WM_GETMINMAXINFO: {
      const Size least = SmallestFrame();
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {least.width, least.height};
      return true;
    }
    case WM_DPICHANGED: {
      const Rect to = RectOf(*reinterpret_cast<const RECT*>(lParam));
      UseScale(HIWORD(wParam));
      SetWindowPos(window_, nullptr, to.x, to.y, to.width, to.height, SWP_NOZORDER | SWP_NOACTIVATE);
      ArrangeAgain();
      return true;
    }
    default:
      return OnMessage(message, wParam, lParam, result);
  }
}

void Dialog::Start() {
  SetWindowTextW(window_, title_.c_str());
  AddControls();
  UseScale(GetDpiForWindow(window_));
  const Rect at = FirstPlace();
  // Its new size places the controls.
  SetWindowPos(window_, nullptr, at.x, at.y, at.width, at.height, SWP_NOZORDER | SWP_NOACTIVATE);
  if (HWND first = GetNextDlgTabItem(window_, nullptr, FALSE)) SetFocus(first);
  OnStart();
}

Rect Dialog::FirstPlace() const {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(owner_ == nullptr ? window_ : owner_, MONITOR_DEFAULTTONEAREST),
                  &monitor);
  RECT over = monitor.rcWork;
  if (owner_ != nullptr && IsWindowVisible(owner_) && !IsIconic(owner_)) GetWindowRect(owner_, &over);
  const Rect screen = RectOf(monitor.rcWork);
  Size size = PreferredFrame();
  if (size.width > screen.width || size.height > screen.height) {
    // On a small screen, or a strongly scaled one, it is content with less.
    const Size least = SmallestFrame();
    size = {std::max(least.width, std::min(size.width, screen.width)),
            std::max(least.height, std::min(size.height, screen.height))};
  }
  return CenteredOver(RectOf(over), size, screen);
}

Size Dialog::PreferredFrame() const {
  const Size least = LeastSize(Arrange());
  return FrameOf(
      {std::max(least.width, Dip(preferred_.width)), std::max(least.height, Dip(preferred_.height))});
}

void Dialog::Command(int control, int notification) {
  if (control != IDOK && control != IDCANCEL) {
    OnCommand(control, notification);
    return;
  }
  // Enter and Escape belong to a composition as long as one is open.
  if (notification != BN_CLICKED || IsComposing()) return;
  if (control == IDOK) {
    OnOk();
  } else {
    OnCancel();
  }
}

bool Dialog::IsComposing() const {
  HWND focus = GetFocus();
  if (focus == nullptr || !IsChild(window_, focus)) return false;
  HIMC context = ImmGetContext(focus);
  if (context == nullptr) return false;
  const LONG length = ImmGetCompositionStringW(context, GCS_COMPSTR, nullptr, 0);
  ImmReleaseContext(focus, context);
  return length > 0;
}

void Dialog::ArrangeAgain() {
  natural_.clear();
  PlaceControls();
  InvalidateRect(window_, nullptr, TRUE);
}

void Dialog::PlaceControls() {
  RECT inside{};
  GetClientRect(window_, &inside);
  const auto places = Place(Arrange(), RectOf(inside));
  HDWP moving = BeginDeferWindowPos(static_cast<int>(places.size()));
  for (const Placement& place : places) {
    HWND item = Item(place.control);
    if (item == nullptr || moving == nullptr) continue;
    wchar_t name[16]{};
    GetClassNameW(item, name, 16);
    const int list =
        lstrcmpiW(name, WC_COMBOBOXW) == 0 ? Dip(300) : 0;  // a combo box's height holds its list
    moving = DeferWindowPos(moving, item, nullptr, place.rect.x, place.rect.y, place.rect.width,
                            place.rect.height + list, SWP_NOZORDER | SWP_NOACTIVATE);
  }
  if (moving != nullptr) EndDeferWindowPos(moving);
}

Size Dialog::FrameOf(Size inside) const {
  RECT frame{0, 0, inside.width, inside.height};
  AdjustWindowRectExForDpi(&frame, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE,
                           static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)), dpi_);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

void Dialog::Inform(std::string_view text) const { MessagePrompts(window_).Inform(text); }

}  // namespace kova::window
