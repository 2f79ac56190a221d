#pragma once

// Kana forms of typed names: hiragana or katakana, full or half width, by the library's own tables.
//
// The answers are those of LCMapStringA for the Japanese locale on Windows 7 and later, character by
// character, and do not depend on the locale data or the code page of the machine.

#include <string>
#include <string_view>

namespace kova::foundation {

/// The form that a kana mode number asks for. The numbers are the callers' (KanaFormOf); do not change.
enum class KanaForm { kFullHiragana = 1, kHalfKatakana = 2, kFullKatakana = 3 };

/// Mode 1 is full-width hiragana, 3 full-width katakana, every other number half-width katakana.
constexpr KanaForm KanaFormOf(int mode) {
  if (mode == 1) return KanaForm::kFullHiragana;
  return mode == 3 ? KanaForm::kFullKatakana : KanaForm::kHalfKatakana;
}

/// `text` with every kana, and every character that has both widths, in the form asked for. A half-width kana
/// and the half-width sound mark after it become one full-width character, and the other way round.
///
/// Deliberately as the platform does it: a character whose mapped form code page 932 lacks becomes "?" (a
/// sound mark alone when widening, ヵ and ヶ as hiragana, ○ ■ │ and the arrows when narrowing); the backslash
/// has no full width; characters that the code page holds twice come out in the preferred code. Bytes that
/// are no character (half characters, undefined codes) come back as they were.
std::string MapKana(std::string_view text, KanaForm form);

/// `text` mapped by MapKana, then with its spaces made alike: half-width ones for `spaceFlag` 0, else
/// full-width ones.
std::string ChangeFurigana(std::string_view text, int kanaMode, int spaceFlag);

/// What a reading field gets when the input method commits `committed`, whose reading it gives as `reading`:
/// a lone full-width space becomes the space that `spaceFlag` asks for; otherwise it is the reading mapped by
/// MapKana, whose spaces stay as the mapping leaves them.
std::string ReadingOfCommit(std::string_view committed, std::string_view reading, int kanaMode,
                            int spaceFlag);

}  // namespace kova::foundation
