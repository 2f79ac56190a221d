#pragma once

// Small conversions that the suite's forms share.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kova::foundation {

/// True when every byte is an ASCII digit; so also for the empty text (deliberately). Full-width digits are
/// none.
[[nodiscard]] bool IsNumeric(std::string_view text);

/// The amount typed in `text`, thousands separators (",") left out wherever they stand, by the rule of
/// ReadInteger: 0 without a digit, the nearest limit of 32 bits when out of range.
[[nodiscard]] std::int32_t Str2Long(std::string_view text);

/// `later` minus `earlier`, both clock times HHMM as numbers (1030 is 10:30), as HHMM. When `earlier` is the
/// later one the result is negative and no clock time. The arithmetic is 16-bit and wraps around.
[[nodiscard]] std::int16_t GetTimeSpan(std::int16_t later, std::int16_t earlier);

/// The one-character name of a weekday, 1 for Sunday to 7 for Saturday; empty for any other number.
[[nodiscard]] std::string_view GetDayOfWeekString(int weekday);

/// The name of a privilege: 1 the administrator, 0 a user, any other one unknown.
[[nodiscard]] std::string_view GetPrivilegeName(int privilege);

/// Finds `text` among the `count` elements that `at(index)` gives, byte by byte and in order; at the first
/// equal one answers its index, otherwise calls `append()` once and answers -1. For any list: the caller says
/// how to read it.
template <typename At, typename Append>
int FindOrAppend(std::string_view text, std::size_t count, At at, Append append) {
  for (std::size_t i = 0; i < count; ++i) {
    if (std::string_view(at(i)) == text) return static_cast<int>(i);
  }
  append();
  return -1;
}

}  // namespace kova::foundation
