// How a dialog looks: what can be told without an eye, and its picture for one.

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <map>

#include "hosts/person/window_driver.h"
#include "platform/os/files.h"
#include "platform/os/filesystem_path.h"

namespace kova::person {
namespace {

struct Seen {
  HWND window;
  int control;
  std::wstring windowClass;
  std::string text;
  RECT place;
};

std::wstring ClassOf(HWND window) {
  wchar_t name[64]{};
  GetClassNameW(window, name, 64);
  std::wstring text(name);
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
  return text;
}

std::vector<Seen> VisibleControls(HWND dialog) {
  std::vector<Seen> seen;
  for (HWND item = GetWindow(dialog, GW_CHILD); item != nullptr; item = GetWindow(item, GW_HWNDNEXT)) {
    const LONG_PTR style = GetWindowLongPtrW(item, GWL_STYLE);
    const bool frame = (ClassOf(item) == L"button" && (style & BS_TYPEMASK) == BS_GROUPBOX) ||
                       (ClassOf(item) == L"static" && (style & SS_TYPEMASK) == SS_ETCHEDFRAME);
    if (!IsWindowVisible(item) || frame) continue;
    Seen control{item, GetDlgCtrlID(item), ClassOf(item), Shown(item), {}};
    GetWindowRect(item, &control.place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&control.place), 2);
    seen.push_back(std::move(control));
  }
  return seen;
}

SIZE NeededFor(const Seen& control) {
  wchar_t text[1024]{};
  GetWindowTextW(control.window, text, 1024);
  HDC device = GetDC(control.window);
  HGDIOBJ before =
      SelectObject(device, reinterpret_cast<HGDIOBJ>(SendMessageW(control.window, WM_GETFONT, 0, 0)));
  RECT room{};
  DrawTextW(device, text, -1, &room, DT_CALCRECT);
  SelectObject(device, before);
  ReleaseDC(control.window, device);
  return {room.right, room.bottom};
}

char AccessKeyOf(const std::string& text) {
  const std::size_t at = text.find('&');
  return at == std::string::npos || at + 1 >= text.size() ? '\0' : text[at + 1];
}

std::string Name(const Seen& control) {
  return std::to_string(control.control) + " (" + control.text.substr(0, 40) + ")";
}

bool IsLabelOrButton(const Seen& control) {
  return control.windowClass == L"static" || control.windowClass == L"button";
}

std::string FaultsOf(const Seen& control, const RECT& inside, const Seen* before) {
  std::string faults;
  const RECT& place = control.place;
  if (place.left < inside.left || place.top < inside.top || place.right > inside.right ||
      place.bottom > inside.bottom)
    faults += Name(control) + " sticks out of the window\n";
  // A label without any room names the control behind it for screen readers.
  if (control.windowClass == L"static" && IsRectEmpty(&place)) return faults;
  if (IsLabelOrButton(control)) {
    const SIZE needed = NeededFor(control);
    if (needed.cx > place.right - place.left || needed.cy > place.bottom - place.top)
      faults += Name(control) + " has too little room for its text\n";
  } else if (before == nullptr || before->windowClass != L"static") {
    faults += Name(control) + " has no label\n";
  }
  return faults;
}

}  // namespace

std::string Faults(HWND dialog) {
  RECT inside{};
  GetClientRect(dialog, &inside);
  const std::vector<Seen> controls = VisibleControls(dialog);
  std::string faults;
  std::map<char, std::string> keys;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    faults += FaultsOf(controls[i], inside, i == 0 ? nullptr : &controls[i - 1]);
    for (std::size_t other = 0; other < i; ++other) {
      RECT shared{};
      if (IntersectRect(&shared, &controls[i].place, &controls[other].place))
        faults += Name(controls[i]) + " lies over " + Name(controls[other]) + "\n";
    }
    const char key = IsLabelOrButton(controls[i]) ? AccessKeyOf(controls[i].text) : '\0';
    if (key != '\0' && !keys.emplace(key, controls[i].text).second)
      faults += Name(controls[i]) + " shares its access key\n";
  }
  return faults;
}

void Photograph(HWND window, const std::string& name) {
  const char* folder = std::getenv("KOVA_PICTURES");
  if (folder == nullptr) return;
  RECT place{};
  GetWindowRect(window, &place);
  const LONG width = place.right - place.left;
  const LONG height = place.bottom - place.top;
  UpdateWindow(window);
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  BITMAPINFO info{};
  // Not 32 bits a pixel: viewers take the fourth byte, which nobody sets, for how opaque the pixel is.
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY);
  GdiFlush();
  const auto size = static_cast<DWORD>((width * 3 + 3) / 4 * 4 * height);  // lines begin at whole double words
  BITMAPFILEHEADER head{0x4D42, static_cast<DWORD>(sizeof head + sizeof info.bmiHeader) + size, 0, 0,
                        static_cast<DWORD>(sizeof head + sizeof info.bmiHeader)};
  std::string file(reinterpret_cast<const char*>(&head), sizeof head);
  file.append(reinterpret_cast<const char*>(&info.bmiHeader), sizeof info.bmiHeader);
  file.append(static_cast<const char*>(bits), size);
  if (os::RealFiles().Replace(std::string(folder) + "\\" + name + ".bmp", file) != os::FileOutcome::kOk)
    std::printf("no picture of %s\n", name.c_str());
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
}

}  // namespace kova::person
