#include "window/wide_text.h"

#include "platform/text932/cp932.h"

namespace kova::window {

std::wstring Wide(std::string_view text) {
  const std::u16string utf16 = text932::ToUtf16(text);
  return {utf16.begin(), utf16.end()};
}

std::wstring WideForEdit(std::string_view text) {
  std::wstring shown;
  const std::wstring wide = Wide(text);
  for (std::size_t i = 0; i < wide.size(); ++i) {
    if (wide[i] == L'\r' || wide[i] == L'\n') {
      if (wide[i] == L'\r' && i + 1 < wide.size() && wide[i + 1] == L'\n') ++i;
      shown += L"\r\n";
    } else {
      shown += wide[i] == L'\0' ? L' ' : wide[i];
    }
  }
  return shown;
}

bool Narrow(std::wstring_view wide, std::string& text, std::wstring& missing) {
  text.clear();
  missing.clear();
  const std::u16string whole(wide.begin(), wide.end());
  if (text932::FromUtf16(whole, text)) return true;
  text.clear();
  for (std::size_t i = 0; i < whole.size();) {
    const bool pair =
        (whole[i] & 0xFC00) == 0xD800 && i + 1 < whole.size() && (whole[i + 1] & 0xFC00) == 0xDC00;
    const std::size_t length = pair ? 2 : 1;
    std::string character;
    if (text932::FromUtf16(std::u16string_view(whole).substr(i, length), character)) {
      text += character;
    } else if (const std::wstring lost(wide.substr(i, length)); missing.find(lost) == std::wstring::npos) {
      missing += lost;
    }
    i += length;
  }
  return false;
}

}  // namespace kova::window
