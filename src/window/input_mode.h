#pragma once

#include <windows.h>

namespace kova::window {

/// How the input method types into a field.
enum class InputMode { kOff, kHiragana, kHalfWidthKatakana, kFullWidthKatakana };

/// Sets it for the window that has the focus; nothing happens where there is no input method. Ask after the
/// focus has arrived: what is set before is lost.
void UseInputMode(HWND window, InputMode mode);

}  // namespace kova::window
