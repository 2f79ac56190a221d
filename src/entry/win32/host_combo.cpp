#include "entry/host_combo.h"

#include <windows.h>

#include "window/wide_text.h"

namespace kova::entry {
namespace {

class WindowCombo final : public HostCombo {
 public:
  explicit WindowCombo(HWND window) : window_(window) {}

 private:
  LRESULT Send(UINT message, int at = 0, LPARAM value = 0) const {
    return SendMessageW(window_, message, static_cast<WPARAM>(at), value);
  }
  void Empty() override { Send(CB_RESETCONTENT); }
  // Inserted at the end an entry stays there, in a sorted box too.
  int Append(std::string_view text) override {
    return static_cast<int>(Send(CB_INSERTSTRING, -1, reinterpret_cast<LPARAM>(window::Wide(text).c_str())));
  }
  int Count() const override { return static_cast<int>(Send(CB_GETCOUNT)); }
  void SetData(int at, std::uintptr_t data) override { Send(CB_SETITEMDATA, at, static_cast<LPARAM>(data)); }
  std::uintptr_t Data(int at) const override { return static_cast<std::uintptr_t>(Send(CB_GETITEMDATA, at)); }
  void Select(int at) override { Send(CB_SETCURSEL, at); }

  HWND window_;
};

}  // namespace

std::unique_ptr<HostCombo> HostComboOf(CComboBox& combo) {
  if (combo.m_hWnd == nullptr) return ComboWithoutWindow(combo);
  return std::make_unique<WindowCombo>(combo.m_hWnd);
}

}  // namespace kova::entry
