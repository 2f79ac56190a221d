#pragma once

// Code page 932 (Windows-31J), the encoding of every text inside the library and in its files.
//
// The mapping is the platform's own (cp932_table.inc); it is kept here so that the answer does not depend on
// the system's code page or on installed locale data. Every byte sequence can be converted to Unicode and
// back without loss of *characters*; what does not come back byte for byte is said at FromUtf8.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kova::text932 {

/// True for the first byte of a double-byte character: 0x81-0x9F, 0xE0-0xFC.
constexpr bool IsLeadByte(unsigned char c) { return (c >= 0x81 && c <= 0x9F) || (c >= 0xE0 && c <= 0xFC); }

/// True for a byte that may follow a lead byte: 0x40-0x7E, 0x80-0xFC.
constexpr bool IsTrailByte(unsigned char c) { return c >= 0x40 && c <= 0xFC && c != 0x7F; }

/// Length in bytes (1 or 2) of the character at `text[at]`. A lead byte that no trail byte follows (a
/// character cut in half) counts as one byte. 0 when `at` is the end of the text or past it.
constexpr std::size_t CharLength(std::string_view text, std::size_t at) {
  if (at >= text.size()) return 0;
  const bool pair = IsLeadByte(static_cast<unsigned char>(text[at])) && at + 1 < text.size() &&
                    IsTrailByte(static_cast<unsigned char>(text[at + 1]));
  return pair ? 2 : 1;
}

/// The longest beginning of `text` of at most `maxBytes` bytes that does not cut a character in half.
std::string_view CutAtCharacter(std::string_view text, std::size_t maxBytes);

/// Position of the last character of `text` that is the single byte `c`, or npos. A trail byte is not one:
/// "表" ends in 0x5C and holds no backslash.
std::size_t FindLast(std::string_view text, char c);

/// Position of the first character at or after `from` that is the single byte `c`, or npos.
std::size_t FindFirst(std::string_view text, char c, std::size_t from = 0);

/// True when the last character of `text` is the single byte `c`.
bool EndsWith(std::string_view text, char c);

/// Every occurrence of `what` in `text`, found at character borders only, replaced by `with`.
/// An empty `what` replaces nothing. Replaced text is not looked at again.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with);

/// The Unicode value of the character at `text[at]` (see CharLength). A byte or pair that the code page does
/// not define is given as U+F700 + byte for its first byte, in the private area that the code page leaves
/// free.
char32_t DecodeAt(std::string_view text, std::size_t at);

/// The code page's value for a Unicode character: below 0x100 a single byte, else lead byte * 256 + trail
/// byte; -1 when the code page has none. Of characters with several codes the platform's choice is given.
/// Beside the platform's table, U+00A5 gives 0x5C, and the forms of ～ － ∥ ￠ ￡ ￢ that other systems use
/// are taken.
int Encode(char32_t c);

/// `text` as UTF-8. Bytes that the code page does not define become the private characters of DecodeAt, so
/// that nothing is dropped.
std::string ToUtf8(std::string_view text);
void AppendUtf8(std::string_view text, std::string& out);

/// `utf8` as code page 932 in `out`. False, and `out` holds what came before, when a character is not in the
/// code page or the input is not UTF-8. FromUtf8(ToUtf8(x)) == x but for the characters that the code page
/// holds twice (NEC and IBM extensions), which come back in the platform's preferred code.
[[nodiscard]] bool FromUtf8(std::string_view utf8, std::string& out);

/// The longest beginning of `utf8` that fits into `capacity` bytes of code page 932, written to `out` without
/// a terminator; gives the number of bytes. For texts that others may have edited: what the code page does
/// not hold becomes "?".
std::size_t FromUtf8Into(std::string_view utf8, char* out, std::size_t capacity);

/// `text` as UTF-16, and back: the same rules.
std::u16string ToUtf16(std::string_view text);
[[nodiscard]] bool FromUtf16(std::u16string_view utf16, std::string& out);
std::size_t FromUtf16Into(std::u16string_view utf16, char* out, std::size_t capacity);

}  // namespace kova::text932
