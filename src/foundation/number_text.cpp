#include "foundation/number_text.h"

#include <limits>

namespace kova::foundation {

std::int32_t ReadInteger(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
  const std::size_t start = text.find_first_not_of(kWhiteSpace);
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    value = value * 10 + (c - '0');
    if (value > kMost)
      return negative ? std::numeric_limits<std::int32_t>::min() : static_cast<std::int32_t>(kMost);
  }
  return static_cast<std::int32_t>(negative ? -value : value);
}

}  // namespace kova::foundation
