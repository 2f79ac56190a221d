#include "hosts/person/window_driver.h"

#include <windows.h>
#include <commctrl.h>

#include <stdexcept>

#include "platform/text932/cp932.h"

namespace kova::person {
namespace {

std::wstring Wide(std::string_view text) {
  const std::u16string utf16 = text932::ToUtf16(text);
  return {utf16.begin(), utf16.end()};
}

std::string Narrow(std::wstring_view wide) {
  std::string text;
  if (!text932::FromUtf16(std::u16string(wide.begin(), wide.end()), text)) text += "(?)";
  return text;
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

/// The visible top-level windows of all processes.
std::vector<HWND> AllWindows() {
  std::vector<HWND> windows;
  EnumWindows(
      [](HWND window, LPARAM list) -> BOOL {
        if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&windows));
  return windows;
}

/// Those of this process.
std::vector<HWND> OwnWindows() {
  std::vector<HWND> windows = AllWindows();
  std::erase_if(windows, [](HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process != GetCurrentProcessId();
  });
  return windows;
}

bool IsMessageBoxWith(HWND window, const std::wstring& text) {
  for (HWND item = GetWindow(window, GW_CHILD); item != nullptr; item = GetWindow(item, GW_HWNDNEXT)) {
    if (TextOf(item).find(text) != std::wstring::npos) return true;
  }
  return false;
}

std::wstring WindowTitle(HWND window) {  // as the system keeps it: other processes are not asked
  wchar_t text[256]{};
  return {text, text + InternalGetWindowText(window, text, 256)};
}

struct Person {
  const std::function<void()>& act;
  std::string failure;
  HANDLE arrived;
};

// The first use of windows by a thread. Under Wine two threads that do it at once can wait for each other for
// ever.
void MeetTheDisplay() {
  const HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
  ReleaseDC(nullptr, GetDC(nullptr));
  (void)OwnWindows();
  DestroyWindow(window);
}

DWORD WINAPI RunPerson(void* argument) {
  auto& person = *static_cast<Person*>(argument);
  SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);  // sees the pixels that are there
  MeetTheDisplay();
  SetEvent(person.arrived);
  try {
    person.act();
  } catch (const std::exception& error) {
    person.failure = error.what();
    // Nested dialogs go one after the other, the innermost first.
    for (int i = 0; i < 50 && !OwnWindows().empty(); ++i) {
      for (HWND window : OwnWindows()) {
        if (IsWindowEnabled(window)) PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
      }
      Sleep(100);
    }
  }
  return 0;
}

}  // namespace

std::string Drive(const std::function<void()>& program, const std::function<void()>& person) {
  MeetTheDisplay();
  Person acting{person, {}, CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  HANDLE thread = CreateThread(nullptr, 0, &RunPerson, &acting, 0, nullptr);
  WaitForSingleObject(acting.arrived, INFINITE);
  program();
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  CloseHandle(acting.arrived);
  return acting.failure;
}

void WaitFor(const char* what, const std::function<bool()>& holds) {
  const ULONGLONG end = GetTickCount64() + kPatience;
  while (!holds()) {
    if (GetTickCount64() >= end) throw std::runtime_error(std::string("waited in vain for ") + what);
    Sleep(10);
  }
}

HWND Dialog(std::string_view title) {
  const std::wstring wanted = Wide(title);
  HWND found = nullptr;
  WaitFor("a dialog", [&] {
    for (HWND window : OwnWindows()) {
      if (TextOf(window) == wanted && IsWindowEnabled(window)) found = window;
    }
    return found != nullptr;
  });
  return found;
}

std::vector<HWND> Dialogs(std::string_view title, std::size_t count) {
  const std::wstring wanted = Wide(title);
  std::vector<HWND> found;
  WaitFor("dialogs", [&] {
    found = AllWindows();
    std::erase_if(found,
                  [&](HWND window) { return !IsWindowEnabled(window) || WindowTitle(window) != wanted; });
    return found.size() == count;
  });
  return found;
}

void WaitUntilClosed(HWND window) {
  WaitFor("a window to close", [&] { return !IsWindow(window) || !IsWindowVisible(window); });
}

HWND MessageBoxWindow(std::string_view containing) {
  const std::wstring text = Wide(containing);
  HWND found = nullptr;
  WaitFor("a message box", [&] {
    for (HWND window : OwnWindows()) {
      if (IsWindowEnabled(window) && IsMessageBoxWith(window, text)) found = window;
    }
    return found != nullptr;
  });
  return found;
}

HWND Item(HWND dialog, int control) {
  HWND item = GetDlgItem(dialog, control);
  if (item == nullptr) throw std::runtime_error("no control " + std::to_string(control));
  return item;
}

void Press(HWND dialog, int control) {
  HWND item = Item(dialog, control);
  if (!IsWindowEnabled(item)) throw std::runtime_error("control " + std::to_string(control) + " is disabled");
  PostMessageW(item, BM_CLICK, 0, 0);
}

void PressKey(HWND focus, WPARAM key, bool alt) {
  const LPARAM down = 1 | (alt ? 1 << 29 : 0);
  PostMessageW(focus, alt ? WM_SYSKEYDOWN : WM_KEYDOWN, key, down);
  PostMessageW(focus, alt ? WM_SYSKEYUP : WM_KEYUP, key, down | static_cast<LPARAM>(0xC0000000));
}

namespace {

GUITHREADINFO ThreadOf(HWND dialog) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
  return info;
}

void Mouse(POINT at, DWORD button) {
  SetCursorPos(at.x, at.y);
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = button | MOUSEEVENTF_MOVE;
  SendInput(1, &input, sizeof input);
}

/// Moves the mouse and waits until it stays there: the display tells of earlier moves late, and takes it back with them.
void Rest(POINT at) {
  int quiet = 0;
  WaitFor("the mouse to rest", [&] {
    POINT now{};
    GetCursorPos(&now);
    quiet = now.x == at.x && now.y == at.y ? quiet + 1 : 0;
    if (quiet == 0) Mouse(at, 0);
    return quiet == 6;
  });
}

}  // namespace

void DragAndDrop(HWND dialog, POINT from, POINT to) {
  // Out of the place where it may still become a click, step by step, until the dialog has it. A window on a busy machine
  // may miss the press, as a person's: released, and pressed again once it can be no double click.
  POINT at = from;
  ULONGLONG giveUp = 0;
  WaitFor("a drag to begin", [&] {
    if (GetTickCount64() >= giveUp) {
      if (giveUp != 0) {
        Mouse(at, MOUSEEVENTF_LEFTUP);
        Sleep(GetDoubleClickTime() + 100);
      }
      Rest(from);
      Mouse(from, MOUSEEVENTF_LEFTDOWN);
      at = from;
      giveUp = GetTickCount64() + kPatience / 4;
    }
    if (at.x < from.x + 40) at.x += 5;
    Mouse(at, 0);
    return ThreadOf(dialog).hwndCapture == dialog;
  });
  Rest(to);
  Mouse(to, MOUSEEVENTF_LEFTUP);
  WaitFor("a drag to end", [&] { return ThreadOf(dialog).hwndCapture == nullptr; });
}

void Click(POINT at) {
  Mouse(at, 0);
  Mouse(at, MOUSEEVENTF_LEFTDOWN);
  Mouse(at, MOUSEEVENTF_LEFTUP);
}

POINT MiddleOf(HWND control) {
  RECT place{};
  GetWindowRect(control, &place);
  return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

POINT CellOnScreen(HWND list, int row, int column) {
  RECT cell{};
  cell.left = LVIR_BOUNDS;
  cell.top = column;
  if (column == 0) {
    ListView_GetItemRect(list, row, &cell, LVIR_LABEL);
  } else {
    SendMessageW(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell));
  }
  POINT middle{(cell.left + cell.right) / 2, (cell.top + cell.bottom) / 2};
  ClientToScreen(list, &middle);
  return middle;
}

void PutIn(HWND dialog, int control, std::string_view text) {
  SendMessageW(Item(dialog, control), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Wide(text).c_str()));
}

std::string Shown(HWND item) { return Narrow(TextOf(item)); }

std::vector<std::string> ComboItems(HWND combo) {
  std::vector<std::string> items;
  const LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    std::wstring text(
        static_cast<std::size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()))));
    items.push_back(Narrow(text));
  }
  return items;
}

void Choose(HWND dialog, int control, std::string_view text) {
  HWND combo = Item(dialog, control);
  const LRESULT item = SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                    reinterpret_cast<LPARAM>(Wide(text).c_str()));
  if (item == CB_ERR) throw std::runtime_error("no such item in the box");
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
  SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(control, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

namespace {

struct TreeEntry {
  HTREEITEM item;
  std::string caption;
  int level;
};

std::vector<TreeEntry> TreeEntries(HWND tree) {
  std::vector<TreeEntry> entries;
  std::vector<std::pair<HTREEITEM, int>> waiting;
  if (HTREEITEM root = TreeView_GetRoot(tree)) waiting.emplace_back(root, 0);
  while (!waiting.empty()) {
    const auto [item, level] = waiting.back();
    waiting.pop_back();
    wchar_t text[256]{};
    TVITEMW asked{};
    asked.hItem = item;
    asked.mask = TVIF_TEXT;
    asked.pszText = text;
    asked.cchTextMax = 256;
    SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
    entries.push_back({item, Narrow(text), level});
    if (HTREEITEM next = TreeView_GetNextSibling(tree, item)) waiting.emplace_back(next, level);
    if (HTREEITEM child = TreeView_GetChild(tree, item)) waiting.emplace_back(child, level + 1);
  }
  return entries;
}

}  // namespace

std::vector<std::string> TreeItems(HWND tree) {
  std::vector<std::string> items;
  for (const TreeEntry& entry : TreeEntries(tree))
    items.push_back(std::string(static_cast<std::size_t>(entry.level) * 2, ' ') + entry.caption);
  return items;
}

void SelectInTree(HWND tree, std::string_view caption) {
  for (const TreeEntry& entry : TreeEntries(tree)) {
    if (entry.caption != caption) continue;
    TreeView_SelectItem(tree, entry.item);
    return;
  }
  throw std::runtime_error("no such item in the tree");
}

std::string ListCell(HWND list, int row, int column) {
  wchar_t text[256]{};
  LVITEMW asked{};
  asked.iSubItem = column;
  asked.pszText = text;
  asked.cchTextMax = 256;
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&asked));
  return Narrow(text);
}

HWND FocusOf(HWND dialog) {
  // A window above it that was just closed may still have it.
  HWND focus = nullptr;
  WaitFor("the focus in a dialog", [&] {
    focus = ThreadOf(dialog).hwndFocus;
    return focus == dialog || IsChild(dialog, focus);
  });
  return focus;
}

}  // namespace kova::person
