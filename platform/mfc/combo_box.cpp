// CComboBox: a window's list, or one in memory.

#ifdef _WIN32
#include <windows.h>
#endif

#include <algorithm>

#include "afxwin.h"
#include "platform/text932/cp932.h"

#ifdef _WIN32

namespace {

std::wstring Wide(const char* text) {
  const std::u16string utf16 = kova::text932::ToUtf16(text == nullptr ? "" : text);
  return {utf16.begin(), utf16.end()};
}

LRESULT Ask(HWND window, UINT message, int at = 0, LPARAM value = 0) {
  return SendMessageW(window, message, static_cast<WPARAM>(at), value);
}

}  // namespace

#else

namespace {

// No windows here: every box is one in memory.
enum Message {
  CB_RESETCONTENT,
  CB_INSERTSTRING,
  CB_GETCOUNT,
  CB_SETCURSEL,
  CB_GETCURSEL,
  CB_SETITEMDATA,
  CB_GETITEMDATA
};
std::intptr_t Ask(HWND, Message, int = 0, std::intptr_t = 0) { return -1; }

}  // namespace

#endif

void CComboBox::ResetContent() {
  entries_.clear();
  selected_ = -1;
  if (m_hWnd != nullptr) Ask(m_hWnd, CB_RESETCONTENT);
}

int CComboBox::InsertString(int at, const char* text) {
#ifdef _WIN32
  if (m_hWnd != nullptr)
    return static_cast<int>(Ask(m_hWnd, CB_INSERTSTRING, at, reinterpret_cast<LPARAM>(Wide(text).c_str())));
#endif
  const int place = at < 0 ? GetCount() : at;
  if (place > GetCount()) return -1;
  entries_.insert(entries_.begin() + place, Entry{text, 0});
  if (selected_ >= place) ++selected_;
  return place;
}

int CComboBox::AddString(const char* text) {
#ifdef _WIN32
  if (m_hWnd != nullptr)
    return static_cast<int>(Ask(m_hWnd, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(text).c_str())));
#endif
  return InsertString(-1, text);
}

int CComboBox::GetCount() const {
  return m_hWnd != nullptr ? static_cast<int>(Ask(m_hWnd, CB_GETCOUNT)) : static_cast<int>(entries_.size());
}

int CComboBox::SetCurSel(int at) {
  if (m_hWnd != nullptr) return static_cast<int>(Ask(m_hWnd, CB_SETCURSEL, at));
  selected_ = at >= 0 && at < GetCount() ? at : -1;
  return selected_;
}

int CComboBox::GetCurSel() const {
  return m_hWnd != nullptr ? static_cast<int>(Ask(m_hWnd, CB_GETCURSEL)) : selected_;
}

int CComboBox::SetItemData(int at, std::uintptr_t data) {
  if (m_hWnd != nullptr)
    return static_cast<int>(Ask(m_hWnd, CB_SETITEMDATA, at, static_cast<std::intptr_t>(data)));
  if (at < 0 || at >= GetCount()) return -1;
  entries_[static_cast<std::size_t>(at)].data = data;
  return 0;
}

std::uintptr_t CComboBox::GetItemData(int at) const {
  if (m_hWnd != nullptr) return static_cast<std::uintptr_t>(Ask(m_hWnd, CB_GETITEMDATA, at));
  return at >= 0 && at < GetCount() ? entries_[static_cast<std::size_t>(at)].data
                                    : static_cast<std::uintptr_t>(-1);
}

void CComboBox::GetLBText(int at, CString& text) const {
  text.Empty();
#ifdef _WIN32
  if (m_hWnd != nullptr) {
    const LRESULT length = Ask(m_hWnd, CB_GETLBTEXTLEN, at);
    if (length <= 0) return;
    std::wstring wide(static_cast<std::size_t>(length) + 1, L'\0');
    wide.resize(static_cast<std::size_t>(
        std::max<LRESULT>(Ask(m_hWnd, CB_GETLBTEXT, at, reinterpret_cast<LPARAM>(wide.data())), 0)));
    std::string narrow;
    if (kova::text932::FromUtf16(std::u16string(wide.begin(), wide.end()), narrow)) text = narrow.c_str();
    return;
  }
#endif
  if (at >= 0 && at < GetCount()) text = entries_[static_cast<std::size_t>(at)].text;
}
