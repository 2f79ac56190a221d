#pragma once

#include <afxwin.h>

namespace kova::entry {

/// The window of the host's object; null for none.
inline HWND HandleOf(const CWnd* window) { return window == nullptr ? nullptr : window->GetSafeHwnd(); }

}  // namespace kova::entry
