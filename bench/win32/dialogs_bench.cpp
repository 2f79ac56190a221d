// How long each dialog takes until it is on the screen and waits for the user, against an empty dialog with
// the same controls. dialogs_bench --app FILE.ini, on a practice; needs a display. scripts/bench_dialogs.sh
// runs it.

#include <windows.h>
#include <afxcmn.h>
#include <afxwin.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "entry/kova_com_dlg.h"
#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "hosts/console/practice.h"

namespace kova::bench {
namespace {

constexpr int kRounds = 15;

struct Control {
  std::wstring windowClass;
  std::wstring text;
  DWORD style = 0;
  DWORD exStyle = 0;
  RECT place{};
  WORD number = 0;
};

struct Seen {
  double shownAt = 0;  // seconds
  bool isSeen = false;
  SIZE size{};
  std::vector<Control> controls;
};
Seen* seeing = nullptr;

double Seconds() {
  LARGE_INTEGER now, frequency;
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

std::vector<Control> ControlsOf(HWND dialog) {
  std::vector<Control> controls;
  for (HWND item = GetWindow(dialog, GW_CHILD); item != nullptr; item = GetWindow(item, GW_HWNDNEXT)) {
    wchar_t name[64]{}, text[512]{};
    GetClassNameW(item, name, 64);
    GetWindowTextW(item, text, 512);
    Control control{name,
                    text,
                    static_cast<DWORD>(GetWindowLongPtrW(item, GWL_STYLE)),
                    static_cast<DWORD>(GetWindowLongPtrW(item, GWL_EXSTYLE)),
                    {},
                    static_cast<WORD>(GetDlgCtrlID(item))};
    GetWindowRect(item, &control.place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&control.place), 2);
    controls.push_back(std::move(control));
  }
  return controls;
}

// A dialog tells its owner when it has nothing more to do: it is on the screen then, and is closed.
LRESULT CALLBACK Owner(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_ENTERIDLE && wParam == MSGF_DIALOGBOX && seeing != nullptr && !seeing->isSeen) {
    seeing->shownAt = Seconds();
    seeing->isSeen = true;
    HWND dialog = reinterpret_cast<HWND>(lParam);
    RECT inside{};
    GetClientRect(dialog, &inside);
    seeing->size = {inside.right, inside.bottom};
    seeing->controls = ControlsOf(dialog);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

/// Milliseconds until the dialog that `open` runs is on the screen.
double Measure(const std::function<void()>& open, Seen& seen) {
  seen = {};
  seeing = &seen;
  const double begun = Seconds();
  open();
  seeing = nullptr;
  return seen.isSeen ? (seen.shownAt - begun) * 1e3 : -1;
}

struct Template {
  DLGTEMPLATE head{};
  WORD menu = 0, windowClass = 0, title = 0;
};

INT_PTR CALLBACK Empty(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_CLOSE) EndDialog(dialog, IDCANCEL);
  if (message != WM_INITDIALOG) return FALSE;
  const auto& like = *reinterpret_cast<const Seen*>(lParam);
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  HFONT font = CreateFontIndirectW(&metrics.lfMessageFont);
  for (const Control& each : like.controls) {
    HWND item = CreateWindowExW(each.exStyle, each.windowClass.c_str(), each.text.c_str(), each.style,
                                each.place.left, each.place.top, each.place.right - each.place.left,
                                each.place.bottom - each.place.top, dialog,
                                reinterpret_cast<HMENU>(static_cast<INT_PTR>(each.number)), nullptr, nullptr);
    SendMessageW(item, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  }
  SetWindowPos(dialog, nullptr, 100, 100, like.size.cx + 20, like.size.cy + 40, SWP_NOZORDER);
  return TRUE;  // the font goes with the process
}

void OpenEmpty(HWND owner, const Seen& like) {
  Template empty;
  empty.head.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN;
  DialogBoxIndirectParamW(nullptr, &empty.head, owner, &Empty, reinterpret_cast<LPARAM>(&like));
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void Compare(const char* name, HWND owner, const std::function<void()>& open) {
  Seen like, ignored;
  (void)Measure(open, like);
  (void)Measure([&] { OpenEmpty(owner, like); }, ignored);
  if (!like.isSeen || !ignored.isSeen) {
    std::printf("%-24s was not shown\n", name);
    return;
  }
  std::vector<double> ours, baseline, ratios;
  for (int round = 0; round < kRounds; ++round) {
    ours.push_back(Measure(open, ignored));
    baseline.push_back(Measure([&] { OpenEmpty(owner, like); }, ignored));
    ratios.push_back(ours.back() / baseline.back());
  }
  std::printf("%-24s ours %8.2f ms   baseline %8.2f ms   ours/baseline %6.3f   aim <= 1.5\n", name,
              Median(ours), Median(baseline), Median(ratios));
  std::fflush(stdout);
}

std::string Today() {
  const std::time_t now = std::time(nullptr);
  char text[16];
  std::strftime(text, sizeof text, "%Y%m%d", std::localtime(&now));
  return text;
}

int Main(const std::vector<std::string>& arguments) {
  if (arguments.size() != 2 || arguments[0] != "--app")
    throw hosts::UsageError("usage: dialogs_bench --app FILE.ini");
  hosts::Practice practice;
  practice.UseProfile(hosts::AbsoluteName(arguments[1]));
  CKovaDBSys* db = &practice.Database();
  WNDCLASSW owners{};
  owners.lpfnWndProc = &Owner;
  owners.lpszClassName = L"KovaBenchOwner";
  RegisterClassW(&owners);
  CWnd owner;
  owner.m_hWnd = CreateWindowW(owners.lpszClassName, L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300,
                               200, nullptr, nullptr, nullptr, nullptr);
  SetForegroundWindow(owner.m_hWnd);
  CString text;
  int number = 0;
  CListCtrl list;
  list.m_hWnd = CreateWindowW(WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 10, 10, owner.m_hWnd, nullptr,
                              nullptr, nullptr);
  CStringArray names;
  for (int i = 0; i < 20; ++i) names.Add("項目");
  const std::string today = Today();
  const std::pair<const char*, std::function<void()>> dialogs[] = {
      {"visit flow board", [&] { CKovaComDlg::OpenVisitFlowDialog(today.c_str()); }},
      {"patient query", [&] { (void)CKovaComDlg::KCDQueryPatientData(db, "BYKANA", "ｻ"); }},
      {"mail templates", [&] { CKovaComDlg::OpenMailTemplateSetting(&owner, 2, nullptr, db); }},
      {"template tree", [&] { CKovaComDlg::MailTemplateTree(&owner, &number); }},
      {"cash or cashless", [&] { CKovaSubTools::CashlessOrCash(&owner, 1000, 2, 0); }},
      {"payment", [&] { CKovaSubTools::CallCashless(&owner, 1000, text, "x"); }},
      {"address choice", [&] { (void)CKovaComDlg::SearchAddressFormPost(&owner, "10", 0); }},
      {"mail settings", [&] { CKovaComDlg::OpenMailSetting(&owner); }},
      {"database folder", [&] { CKovaComDlg::OpenSettingDBPath(nullptr, &owner); }},
      {"column order", [&] { CKovaComDlg::OpenListItemSettingSort(&list, "Bench", &names, 0, &owner, 0); }},
  };
  for (const auto& [name, open] : dialogs) Compare(name, owner.m_hWnd, open);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  return kova::hosts::RunConsole("dialogs_bench", argc, argv, kova::bench::Main);
}
