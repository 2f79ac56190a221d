#pragma once

#include <functional>
#include <string_view>

namespace kova::entry {

/// Runs `work` behind a small window that says what is waited for, over the thread's active window, so that
/// the host's windows stay alive. Where there are no windows it is just run.
void HostWait(std::string_view text, const std::function<void()>& work);

}  // namespace kova::entry
