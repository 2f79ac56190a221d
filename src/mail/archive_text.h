#pragma once

// Texts as an MFC archive stores them (ANSI form): a length prefix, then that many bytes. The prefix is one
// byte below 0xFF; else 0xFF and 16 bits below 0xFFFE; else 0xFF, 0xFFFF and 32 bits, least significant byte
// first. Stored in the practice's template files; do not change.

#include <optional>
#include <string>
#include <string_view>

namespace kova::mail {

/// Appends `text` with its prefix to `archive`.
void AppendArchiveText(std::string_view text, std::string& archive);

/// The text at the beginning of `archive`, which then begins behind it. Nothing, and `archive` as it was,
/// when the archive ends early or is of another form (0xFF, 0xFFFE introduces Unicode texts). The view is
/// into `archive`: a prefix never makes memory grow. Longer prefixes than needed are taken, as MFC takes
/// them.
std::optional<std::string_view> TakeArchiveText(std::string_view& archive);

}  // namespace kova::mail
