#pragma once

// The border between code page 932, in which all texts inside are, and Unicode windows.

#include <string>
#include <string_view>

namespace kova::window {

/// A text for a window. Bytes that the code page does not define become private characters and come back from
/// Narrow as they were.
std::wstring Wide(std::string_view text);

/// The same with every line break ("\n", "\r" or both) as "\r\n", as edit controls want it, and a NUL as a
/// blank.
std::wstring WideForEdit(std::string_view text);

/// What a window shows, in code page 932. False when it holds characters that the code page lacks; they are
/// left out of `text` and collected in `missing`, each once.
[[nodiscard]] bool Narrow(std::wstring_view wide, std::string& text, std::wstring& missing);

}  // namespace kova::window
