#include "window/message_prompts.h"

#include "window/dialog.h"
#include "window/themed.h"
#include "window/wide_text.h"

namespace kova::window {

int MessagePrompts::Show(const std::wstring& text, UINT style) const {
  const Themed themed;
  HWND owner = owner_ == nullptr ? GetActiveWindow() : owner_;
  const UINT alone = owner == nullptr ? MB_TASKMODAL | MB_SETFOREGROUND : 0;
  const std::wstring title = owner == nullptr ? std::wstring() : WindowText(owner);
  return MessageBoxW(owner, text.c_str(), title.empty() ? L"確認" : title.c_str(), style | alone);
}

bool MessagePrompts::AskYesNo(std::string_view text) {
  return Show(Wide(text), MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void MessagePrompts::Inform(std::string_view text) { Show(Wide(text), MB_OK | MB_ICONINFORMATION); }

void MessagePrompts::Fail(std::string_view text) const { Show(Wide(text), MB_OK | MB_ICONERROR); }

bool MessagePrompts::Confirm(std::string_view text) const {
  return Show(Wide(text), MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

bool DialogPrompts::AskYesNo(std::string_view text) {
  return MessagePrompts(dialog_.Handle()).AskYesNo(text);
}

void DialogPrompts::Inform(std::string_view text) { MessagePrompts(dialog_.Handle()).Inform(text); }

}  // namespace kova::window
