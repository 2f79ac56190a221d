#include "foundation/kana.h"

#include "platform/text932/cp932.h"

namespace kova::foundation {
namespace {

using text932::CharLength;

// Unicode U+FF61 to U+FF9D (bytes 0xA1 to 0xDD) in their full-width forms, in order.
constexpr std::u16string_view kWideOfHalf =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモ"
    u"ヤユヨラリルレロワン";
constexpr char32_t kFirstHalf = 0xFF61;
constexpr char32_t kHalfVoicedMark = 0xFF9E;
constexpr char32_t kHalfSemiVoicedMark = 0xFF9F;
static_assert(kFirstHalf + kWideOfHalf.size() == kHalfVoicedMark);

// Unvoiced and voiced katakana in the same order.
constexpr std::u16string_view kPlain = u"ウカキクケコサシスセソタチツテトハヒフヘホヽ";
constexpr std::u16string_view kVoiced = u"ヴガギグゲゴザジズゼゾダヂヅデドバビブベボヾ";
constexpr std::u16string_view kPlainOfSemiVoiced = u"ハヒフヘホ";
constexpr std::u16string_view kSemiVoiced = u"パピプペポ";
// Their voiced forms exist in Unicode but not in the code page.
constexpr std::u16string_view kVoicedElsewhere = u"ヲワヰヱ";
// Katakana without a half-width form that the platform composes with a half-width mark all the same.
constexpr std::u16string_view kComposedThoughWide = u"ヽヰヱ";

// The platform's mapping leads to a character that the code page lacks; its conversion then gives "?".
constexpr char32_t kNotInCodePage = '?';
constexpr std::u16string_view kWidenedOut = u"゛゜";
constexpr std::u16string_view kNarrowedOut = u"○■→←↑↓│";
constexpr std::u16string_view kHiraganaOut = u"ヵヶ";

constexpr std::size_t Find(std::u16string_view set, char32_t c) { return set.find(static_cast<char16_t>(c)); }
constexpr bool Holds(std::u16string_view set, char32_t c) { return Find(set, c) != set.npos; }

struct Counterpart {
  char32_t wide;
  char32_t half;
};
// Besides the kana and the block of full-width ASCII; these go one way only, to half width.
constexpr Counterpart kNarrowOnly[] = {{U'‘', '\''},
                                       {U'’', '\''},
                                       {U'“', '"'},
                                       {U'”', '"'},
                                       {U'￥', '\\'},
                                       {U'￤', '|'},
                                       {U'　', ' '},
                                       {U'゛', kHalfVoicedMark},
                                       {U'゜', kHalfSemiVoicedMark}};

// The platform gives the backslash no other width.
constexpr bool IsAsciiOfBothWidths(char32_t c) { return c > ' ' && c <= '~' && c != '\\'; }
constexpr char32_t kAsciiWidthStep = 0xFEE0;
constexpr char32_t kKanaStep = U'ァ' - U'ぁ';

char32_t Katakana(char32_t c) {
  const bool hiragana = (c >= U'ぁ' && c <= U'ん') || c == U'ゝ' || c == U'ゞ';
  return hiragana ? c + kKanaStep : c;
}

char32_t Hiragana(char32_t c) {
  if (Holds(kHiraganaOut, c)) return kNotInCodePage;
  const bool katakana = (c >= U'ァ' && c <= U'ン') || c == U'ヽ' || c == U'ヾ';
  return katakana ? c - kKanaStep : c;
}

bool IsHalfKana(char32_t c) { return c >= kFirstHalf && c < kHalfVoicedMark; }

char32_t Widen(char32_t c) {
  if (IsHalfKana(c)) return kWideOfHalf[c - kFirstHalf];
  if (c == kHalfVoicedMark || c == kHalfSemiVoicedMark || Holds(kWidenedOut, c)) return kNotInCodePage;
  if (c == ' ') return U'　';
  return IsAsciiOfBothWidths(c) ? c + kAsciiWidthStep : c;
}

char32_t Narrow(char32_t c) {
  const std::size_t kana = Find(kWideOfHalf, c);
  if (kana != kWideOfHalf.npos) return kFirstHalf + static_cast<char32_t>(kana);
  if (c > kAsciiWidthStep && IsAsciiOfBothWidths(c - kAsciiWidthStep)) return c - kAsciiWidthStep;
  for (const Counterpart& pair : kNarrowOnly) {
    if (pair.wide == c) return pair.half;
  }
  return Holds(kNarrowedOut, c) ? kNotInCodePage : c;
}

// The one character that `c` and the half-width sound mark `mark` after it make; 0 when they stay two.
char32_t Compose(char32_t c, char32_t mark) {
  if (!IsHalfKana(c) && !Holds(kComposedThoughWide, c)) return 0;
  const char32_t wide = Widen(c);
  if (mark == kHalfSemiVoicedMark) {
    const std::size_t at = Find(kPlainOfSemiVoiced, wide);
    return at == kSemiVoiced.npos ? 0 : kSemiVoiced[at];
  }
  if (mark != kHalfVoicedMark) return 0;
  if (Holds(kVoicedElsewhere, wide)) return kNotInCodePage;
  const std::size_t at = Find(kPlain, wide);
  return at == kPlain.npos ? 0 : kVoiced[at];
}

void Put(char32_t c, std::string& out) {
  const int code = text932::Encode(c);
  if (code > 0xFF) out += static_cast<char>(code >> 8);
  out += static_cast<char>(code < 0 ? static_cast<int>(kNotInCodePage) : code & 0xFF);
}

void PutHalf(char32_t c, std::string& out) {
  const char32_t katakana = Katakana(c);
  const std::size_t voiced = Find(kVoiced, katakana);
  const std::size_t semiVoiced = Find(kSemiVoiced, katakana);
  if (voiced != kVoiced.npos) {
    Put(Narrow(kPlain[voiced]), out);
    Put(kHalfVoicedMark, out);
  } else if (semiVoiced != kSemiVoiced.npos) {
    Put(Narrow(kPlainOfSemiVoiced[semiVoiced]), out);
    Put(kHalfSemiVoicedMark, out);
  } else {
    Put(Narrow(katakana), out);
  }
}

// True when the bytes at `at` are a character of the code page, not a half one or an undefined code.
bool IsCharacter(std::string_view text, std::size_t at, char32_t c) {
  return CharLength(text, at) == 2 ? c < 0xF700 || c > 0xF7FF
                                   : !text932::IsLeadByte(static_cast<unsigned char>(text[at]));
}

}  // namespace

std::string MapKana(std::string_view text, KanaForm form) {
  std::string out;
  out.reserve(text.size() * 2);
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = CharLength(text, i);
    char32_t c = text932::DecodeAt(text, i);
    const std::size_t at = i;
    i += length;
    if (!IsCharacter(text, at, c)) {
      out += text.substr(at, length);
    } else if (form == KanaForm::kHalfKatakana) {
      PutHalf(c, out);
    } else {
      const char32_t composed = i < text.size() ? Compose(c, text932::DecodeAt(text, i)) : 0;
      if (composed != 0) ++i;
      c = composed != 0 ? composed : Widen(c);
      Put(form == KanaForm::kFullHiragana ? Hiragana(c) : Katakana(c), out);
    }
  }
  return out;
}

std::string ChangeFurigana(std::string_view text, int kanaMode, int spaceFlag) {
  const std::string mapped = MapKana(text, KanaFormOf(kanaMode));
  return spaceFlag == 0 ? text932::ReplaceAll(mapped, "　", " ") : text932::ReplaceAll(mapped, " ", "　");
}

std::string ReadingOfCommit(std::string_view committed, std::string_view reading, int kanaMode,
                            int spaceFlag) {
  if (committed == "　") return spaceFlag == 0 ? " " : "　";
  return MapKana(reading, KanaFormOf(kanaMode));
}

}  // namespace kova::foundation
