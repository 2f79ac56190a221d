#pragma once

// When two pieces of an address are the same although they are written differently.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kova::postal {

/// `text` without its spaces and without every hyphen and dash that a Japanese keyboard makes
/// (- － ‐ ― ー ｰ ─ ━).
std::string WithoutHyphensAndSpaces(std::string_view text);

/// `text` without its half-width and full-width spaces.
std::string WithoutSpaces(std::string_view text);

/// What two writings of the same text have in common: widths, hiragana and katakana made alike, ヶ ヵ ッ made
/// large, hyphens and spaces left out; a value for each character. For finding only, never for showing.
std::u16string SearchForm(std::string_view text);

/// True when characters that begin with these bytes differ in any writing: ASCII and most kanji, which takes
/// no look into the tables.
constexpr bool AreSurelyDifferent(char a, char b) {
  const auto hasOneForm = [](char first) {
    const auto c = static_cast<unsigned char>(first);
    return c < 0x80 || (c >= 0x88 && c <= 0x9F) || (c >= 0xE0 && c <= 0xEC);
  };
  return a != b && hasOneForm(a) && hasOneForm(b);
}

/// A text of which the beginning is looked for in the fields of a list.
class AddressKey {
 public:
  explicit AddressKey(std::string text);

  struct Match {
    std::size_t length = 0;  // bytes of the key that the field begins with, whole characters only
    bool exact = true;       // byte for byte, not in another writing
  };

  /// How far `field` and the key are the same: as they stand, then in SearchForm's writings (hyphens are made
  /// alike here, not left out). A half character is no beginning of a whole one.
  Match In(std::string_view field) const;

  std::size_t Size() const { return text_.size(); }

 private:
  std::string text_;
  std::vector<std::size_t> borders_;  // by number of equal bytes: how many of them are whole characters
};

}  // namespace kova::postal
