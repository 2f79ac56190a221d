#pragma once

// Numbers at the beginning of texts, as stored settings and typed amounts hold them.

#include <cstdint>
#include <string_view>

namespace kova::foundation {

/// The whole number at the beginning of `text` by the C library's atoi rule: white space is skipped, one sign
/// is taken, reading stops at the first byte that is no ASCII digit. 0 when there is no digit. A number out
/// of the range of 32 bits gives the nearest limit, as the Windows runtime does.
[[nodiscard]] std::int32_t ReadInteger(std::string_view text);

}  // namespace kova::foundation
