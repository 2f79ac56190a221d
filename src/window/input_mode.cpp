#include "window/input_mode.h"

#include <imm.h>

namespace kova::window {

void UseInputMode(HWND window, InputMode mode) {
  HIMC context = ImmGetContext(window);
  if (context == nullptr) return;
  DWORD conversion = 0;
  DWORD sentence = 0;
  ImmGetConversionStatus(context, &conversion, &sentence);
  conversion &= ~static_cast<DWORD>(IME_CMODE_NATIVE | IME_CMODE_KATAKANA | IME_CMODE_FULLSHAPE);
  if (mode == InputMode::kHiragana) conversion |= IME_CMODE_NATIVE | IME_CMODE_FULLSHAPE;
  if (mode == InputMode::kHalfWidthKatakana) conversion |= IME_CMODE_NATIVE | IME_CMODE_KATAKANA;
  if (mode == InputMode::kFullWidthKatakana)
    conversion |= IME_CMODE_NATIVE | IME_CMODE_KATAKANA | IME_CMODE_FULLSHAPE;
  ImmSetOpenStatus(context, mode == InputMode::kOff ? FALSE : TRUE);
  if (mode != InputMode::kOff) ImmSetConversionStatus(context, conversion, sentence);
  ImmReleaseContext(window, context);
}

}  // namespace kova::window
