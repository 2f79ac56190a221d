#pragma once

// The text of a private profile (an "ini file"), read and edited as the platform's profile functions do it,
// but from bytes in memory: no file, no system code page.
//
// Reading gives what GetPrivateProfileStringA gives. Where Wine and Windows are known to differ, Windows is
// followed: a key that begins with ";" is a comment and never found, and bytes that the code page does not
// define come back as they are. One exception is deliberate: a text with a UTF-8 byte-order mark is read as
// UTF-8 (as Wine does; Windows would take the mark for a part of the first line and lose the first section).

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::os {

/// A profile text and an index over it that grows with what is asked: the first look-up in a section walks
/// the text once, the next ones in that section find their key by its hash.
///
/// Look-ups fill the index, so one object belongs to one thread at a time.
class ProfileText {
 public:
  /// From the bytes of a file; text marked as UTF-8 or UTF-16 is converted ("?" for what code page 932
  /// lacks).
  explicit ProfileText(std::string bytes);

  /// The value of the first `key` in the first `section`, without the blanks and the one pair of quotes
  /// around it (which may be empty); nothing when there is no such section or key or the key has no "=".
  /// Names are compared without regard to ASCII case and to blanks around them; section "" is what stands
  /// before the first section. The view lasts as long as this object is neither moved nor destroyed.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

 private:
  struct Key {
    std::uint32_t hash;
    std::uint32_t line;  // where its line begins
  };
  struct Section {
    std::string name;
    std::vector<Key> keys;
  };

  const Section& Resolve(std::string_view section) const;
  std::size_t FindBody(std::string_view section) const;
  void IndexKeys(std::size_t from, std::vector<Key>& keys) const;

  std::string text_;
  mutable std::vector<Section> sections_;  // those asked for so far, found or not
};

/// `text` (a file's bytes) with `key` of `section` set to `value`, as a reader of
/// WritePrivateProfileStringA's file would see it; a missing section or key is added at its end. Without a
/// value the key is removed; without a key the section. Everything else stays byte for byte: comments, other
/// keys, line ends, encoding.
///
/// `value` counts up to its first line break or NUL and without the blanks around it, which is what a reader
/// would see of it. Nothing is given back when `section` or `key` are names that could not be read again, or
/// would harm their neighbours: empty, with a line break or "=", a key that begins with ";", a key and value
/// that look like a section, a section that ends in half a character (which would swallow the bracket).
std::optional<std::string> EditProfileText(std::string_view text, std::string_view section,
                                           std::optional<std::string_view> key,
                                           std::optional<std::string_view> value);

/// The number that GetPrivateProfileIntA makes of a value: decimal, or after "0x", "0o", "0b" in that base;
/// blanks and a sign may lead, what follows the digits is ignored; 0 without digits; wraps at 32 bits.
std::int32_t ProfileInt(std::string_view value);

}  // namespace kova::os
