// Filling a text of any bytes gives what replacing word for word by characters gives. The input up to its
// first NULs are values, the rest is the text.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "mail/placeholders.h"
#include "platform/text932/cp932.h"

using namespace kova::mail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  PlaceholderValues values;
  for (std::string& value : values) {
    const std::size_t end = text.find('\0');
    if (end == std::string_view::npos || end > 64) break;  // a value in a value's value: lengths multiply
    value = text.substr(0, end);
    text.remove_prefix(end + 1);
  }
  std::string expected(text);
  for (std::size_t i = 0; i < kPlaceholderCount; ++i) {
    if (expected.size() > std::size_t{1} << 20) return 0;
    expected = kova::text932::ReplaceAll(expected, TextOf(static_cast<Placeholder>(i)).literal, values[i]);
  }
  if (FillPlaceholders(std::string(text), values) != expected) std::abort();
  for (const std::string& word : UnknownPlaceholders(text)) {
    if (FillPlaceholders(word, values) != word || text.find(word) == std::string_view::npos) std::abort();
  }
  return 0;
}
