#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace kova::cashless {

/// Eight hexadecimal digits that other texts of the same length hardly share. Stored; do not change.
inline std::string LineCheck(std::string_view text) {
  std::uint32_t sum = 2166136261u;
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619u;
  char digits[12];
  std::snprintf(digits, sizeof digits, "%08X", static_cast<unsigned>(sum));
  return digits;
}

}  // namespace kova::cashless
