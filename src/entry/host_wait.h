#pragma once

#include <afxwin.h>

#include <functional>
#include <string_view>

#include "foundation/progress.h"

namespace kova::entry {

/// Runs `work` behind a small window that says what is waited for, over the thread's active window, so that
/// the host's windows stay alive. Where there are no windows it is just run.
void HostWait(std::string_view text, const std::function<void()>& work);

/// Runs `work` behind a window with that title, over `parent` (null: the thread's active window), that shows
/// how far it is and lets the user stop it. False when the user did. Where there are no windows it is just
/// run.
bool HostWork(CWnd* parent, std::string_view title, const std::function<void(foundation::Progress&)>& work);

}  // namespace kova::entry
