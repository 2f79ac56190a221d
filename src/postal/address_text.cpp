#include "postal/address_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "foundation/kana.h"
#include "platform/text932/cp932.h"

namespace kova::postal {
namespace {

using foundation::KanaForm;
using foundation::MapKana;
using text932::CharLength;
using text932::IsLeadByte;

unsigned Byte(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

unsigned CodeOf(std::string_view character) {
  return character.size() == 2 ? Byte(character, 0) << 8 | Byte(character, 1) : Byte(character, 0);
}

// Of each row the first character stands for the others.
constexpr std::string_view kAlike[] = {"－‐―ー─━", "ケヶ", "カヵ", "ツッ"};
constexpr unsigned kHyphen = 0x817C;
constexpr unsigned kSpace = 0x8140;

unsigned Merged(unsigned code) {
  for (const std::string_view row : kAlike) {
    for (std::size_t i = 2; i < row.size(); i += 2) {
      if (CodeOf(row.substr(i, 2)) == code) return CodeOf(row.substr(0, 2));
    }
  }
  return code;
}

// The full-width katakana form of a character; itself where the mapping leads out of the code page.
unsigned FormByMapping(std::string_view character) {
  const std::string wide = MapKana(character, KanaForm::kFullKatakana);
  return Merged(CodeOf(wide.size() == 2 ? std::string_view(wide) : character));
}

// Only the rows of symbols, digits, letters and kana have several writings.
constexpr unsigned kFirstRow = 0x81;
constexpr unsigned kLastRow = 0x84;

struct Forms {
  std::array<std::uint16_t, 256> single{};
  std::array<std::array<std::uint16_t, 256>, kLastRow - kFirstRow + 1> rows{};

  Forms() {
    for (unsigned c = 0; c < 256; ++c) {
      const char text[] = {static_cast<char>(c)};
      single[c] = static_cast<std::uint16_t>(FormByMapping({text, 1}));
      for (unsigned row = kFirstRow; row <= kLastRow; ++row) {
        const char pair[] = {static_cast<char>(row), static_cast<char>(c)};
        if (CharLength({pair, 2}, 0) == 2)
          rows[row - kFirstRow][c] = static_cast<std::uint16_t>(FormByMapping({pair, 2}));
      }
    }
  }
};

struct Character {
  unsigned form;
  std::size_t length;
};

constexpr bool IsHalfSoundMark(unsigned c) { return c == 0xDE || c == 0xDF; }

Character CharacterAt(std::string_view text, std::size_t at) {
  static const Forms forms;
  const unsigned first = Byte(text, at);
  if (CharLength(text, at) == 2) {
    const unsigned code = CodeOf(text.substr(at, 2));
    if (first <= kLastRow) return {forms.rows[first - kFirstRow][code & 0xFF], 2};
    if (first != 0x87 && first < 0xED) return {code, 2};
    // Some characters stand in the code page twice.
    const int preferred = text932::Encode(text932::DecodeAt(text, at));
    return {preferred > 0xFF ? static_cast<unsigned>(preferred) : code, 2};
  }
  if (at + 1 < text.size() && IsHalfSoundMark(Byte(text, at + 1))) {
    const std::string composed = MapKana(text.substr(at, 2), KanaForm::kFullKatakana);
    if (composed.size() == 2) return {Merged(CodeOf(composed)), 2};
  }
  return {forms.single[first], 1};
}

template <typename Drop>
std::string Without(std::string_view text, Drop drop) {
  std::string rest;
  rest.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = CharLength(text, at);
    if (!drop(CharacterAt(text, at).form)) rest += text.substr(at, length);
    at += length;
  }
  return rest;
}

bool IsHyphenOrSpace(unsigned form) { return form == kHyphen || form == kSpace; }

}  // namespace

std::string WithoutHyphensAndSpaces(std::string_view text) { return Without(text, IsHyphenOrSpace); }

std::string WithoutSpaces(std::string_view text) {
  return Without(text, [](unsigned form) { return form == kSpace; });
}

std::u16string SearchForm(std::string_view text) {
  std::u16string out;
  for (std::size_t at = 0; at < text.size();) {
    const auto [form, length] = CharacterAt(text, at);
    at += length;
    if (!IsHyphenOrSpace(form)) out += static_cast<char16_t>(form);
  }
  return out;
}

AddressKey::AddressKey(std::string text) : text_(std::move(text)), borders_(text_.size() + 1, 0) {
  for (std::size_t at = 0; at < text_.size();) {
    const std::size_t end = at + CharLength(text_, at);
    const bool half = end == at + 1 && IsLeadByte(static_cast<unsigned char>(text_[at]));
    for (std::size_t equal = at + 1; equal <= end; ++equal)
      borders_[equal] = equal == end && !half ? end : at;
    at = end;
  }
}

AddressKey::Match AddressKey::In(std::string_view field) const {
  const std::size_t shorter = std::min(text_.size(), field.size());
  const auto differ =
      std::mismatch(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(shorter), field.begin());
  Match match{borders_[static_cast<std::size_t>(differ.first - text_.begin())], true};
  for (std::size_t inField = match.length; match.length < text_.size() && inField < field.size();) {
    if (AreSurelyDifferent(text_[match.length], field[inField])) break;
    const Character ours = CharacterAt(text_, match.length);
    const Character theirs = CharacterAt(field, inField);
    if (ours.form != theirs.form) break;
    match.length += ours.length;
    inField += theirs.length;
    match.exact = false;
  }
  return match;
}

}  // namespace kova::postal
