#include "afx.h"

#include <cstdio>

void CString::Format(const char* format, ...) {
  va_list arguments, again;
  va_start(arguments, format);
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  text_.assign(length < 0 ? 0 : static_cast<std::size_t>(length), '\0');
  if (length > 0) std::vsnprintf(text_.data(), text_.size() + 1, format, again);
  va_end(again);
}
