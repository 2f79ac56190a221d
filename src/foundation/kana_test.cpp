#include "foundation/kana.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/text932/cp932.h"
#ifdef _WIN32
#include <windows.h>
#endif

namespace kova::foundation {
namespace {

TEST(Kana, Forms) {
  const struct {
    const char *text, *hiragana, *katakana, *half;
  } rows[] = {
      {"", "", "", ""},
      {"やまだ　たろう", "やまだ　たろう", "ヤマダ　タロウ", "ﾔﾏﾀﾞ ﾀﾛｳ"},
      {"ｶﾞｷﾞﾊﾟｳﾞ", "がぎぱヴ", "ガギパヴ", "ｶﾞｷﾞﾊﾟｳﾞ"},
      {"ぴょんっー・｡", "ぴょんっー・。", "ピョンッー・。", "ﾋﾟｮﾝｯｰ･｡"},
      {"Ab1-\\ソ表", "Ａｂ１－\\そ表", "Ａｂ１－\\ソ表", "Ab1-\\ｿ表"},
      {"￥＼～’”", "￥＼～’”", "￥＼～’”", "\\＼~'\""},
      {"ゝゞヽヾヽﾞ", "ゝゞゝゞゞ", "ヽヾヽヾヾ", "ヽヽﾞヽヽﾞヽﾞ"},
      {"ゎゐゑヮヰヱ", "ゎゐゑゎゐゑ", "ヮヰヱヮヰヱ", "ヮヰヱヮヰヱ"},
      // Marks that have nothing to join, and forms that the code page lacks, as the platform answers.
      {"ｱﾞ", "あ?", "ア?", "ｱﾞ"},
      {"ｶ゛ｶﾟ", "か?か?", "カ?カ?", "ｶﾞｶﾟ"},
      {"カﾞ", "か?", "カ?", "ｶﾞ"},
      {"ﾜﾞヵヶ", "???", "?ヵヶ", "ﾜﾞヵヶ"},
      {"○→", "○→", "○→", "??"},
      // No characters: half ones, undefined codes (whose second byte looks like a kana), then a mark.
      {"\x83", "\x83", "\x83", "\x83"},
      {"ｶ\x83", "か\x83", "カ\x83", "ｶ\x83"},
      {"\x81\xB6\xDE\x80\xA0\xFD", "\x81\xB6?\x80\xA0\xFD", "\x81\xB6?\x80\xA0\xFD",
       "\x81\xB6\xDE\x80\xA0\xFD"},
      // Codes held twice come out in the preferred one: NEC's ≒, NEC's selection of IBM's 纊.
      {"\x87\x90\xED\x40", "\x81\xE0\xFA\x5C", "\x81\xE0\xFA\x5C", "\x81\xE0\xFA\x5C"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MapKana(row.text, KanaForm::kFullHiragana), row.hiragana) << text932::ToUtf8(row.text);
    EXPECT_EQ(MapKana(row.text, KanaForm::kFullKatakana), row.katakana) << text932::ToUtf8(row.text);
    EXPECT_EQ(MapKana(row.text, KanaForm::kHalfKatakana), row.half) << text932::ToUtf8(row.text);
  }
}

TEST(Kana, ChangeFuriganaMakesSpacesAlikeByCharacters) {
  const struct {
    const char* text;
    int mode, spaceFlag;
    const char* expected;
  } rows[] = {
      {"やまだ　たろう", 0, 0, "ﾔﾏﾀﾞ ﾀﾛｳ"},
      {"ﾔﾏﾀﾞ ﾀﾛｳ", 1, 1, "やまだ　たろう"},
      {"ﾔﾏﾀﾞ ﾀﾛｳ", 3, 0, "ヤマダ タロウ"},
      {"あ い　う", 2, -1, "ｱ　ｲ　ｳ"},
      {"あ　", 99, 0, "ｱ "},
      // Two characters whose inner bytes are those of the full-width space.
      {"\x83\x81\x81\x40", 1, 0, "め "},
      {"\x88\x81\x40", 1, 0, "\x88\x81＠"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ChangeFurigana(row.text, row.mode, row.spaceFlag), row.expected) << text932::ToUtf8(row.text);
  }
}

TEST(Kana, ReadingOfCommit) {
  EXPECT_EQ(ReadingOfCommit("　", "ignored", 1, 0), " ");
  EXPECT_EQ(ReadingOfCommit("　", "", 0, 1), "　");
  EXPECT_EQ(ReadingOfCommit("　　", "　　", 1, 0), "　　") << "the space flag plays no part here";
  EXPECT_EQ(ReadingOfCommit(" ", " ", 0, 1), " ");
  EXPECT_EQ(ReadingOfCommit("山田", "ﾔﾏﾀﾞ", 1, 0), "やまだ");
  EXPECT_EQ(ReadingOfCommit("山田", "", 1, 0), "");
}

TEST(Kana, BytesThatAreNoCharacterComeBackBetweenCharacters) {
  int pairs = 0;
  for (int lead = 0x81; lead <= 0xFC; ++lead) {
    for (int trail = 0x40; trail <= 0xFC; ++trail) {
      const std::string pair = {static_cast<char>(lead), static_cast<char>(trail)};
      if (text932::CharLength(pair, 0) != 2 || text932::Encode(text932::DecodeAt(pair, 0)) > 0xFF) continue;
      ++pairs;
      ASSERT_EQ(MapKana("ｱ" + pair + "ア", KanaForm::kFullHiragana), "あ" + pair + "あ")
          << lead << ' ' << trail;
      ASSERT_EQ(MapKana("ｱ" + pair + "ア", KanaForm::kHalfKatakana), "ｱ" + pair + "ｱ")
          << lead << ' ' << trail;
    }
  }
  EXPECT_GT(pairs, 1000);
}

#ifdef _WIN32

// The platform's answer, the oracle. The locale's own code page is 932, whatever the system's is. Its tables
// agree with Windows 7 and later also where the answer surprises: ゛ widened to "?", no other width for "\",
// ' and " widened to the IBM extensions. No character had to be excepted.
std::string Platform(const std::string& text, KanaForm form) {
  constexpr LCID kJapanese = 0x0411;
  const DWORD flags = form == KanaForm::kFullHiragana   ? LCMAP_HIRAGANA | LCMAP_FULLWIDTH
                      : form == KanaForm::kFullKatakana ? LCMAP_KATAKANA | LCMAP_FULLWIDTH
                                                        : LCMAP_KATAKANA | LCMAP_HALFWIDTH;
  char out[64];
  const int n = LCMapStringA(kJapanese, flags, text.data(), static_cast<int>(text.size()), out, sizeof out);
  return std::string(out, out + n);
}

// Every byte and pair that the platform itself takes for one character of code page 932.
std::vector<std::string> AllCharacters() {
  std::vector<std::string> all;
  const auto add = [&](const std::string& bytes) {
    wchar_t wide[2];
    if (MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), wide,
                            2) == 1) {
      all.push_back(bytes);
    }
  };
  for (int c = 1; c < 0x100; ++c) {
    add({static_cast<char>(c)});
    if (!text932::IsLeadByte(static_cast<unsigned char>(c))) continue;
    for (int trail = 0x40; trail <= 0xFC; ++trail) {
      if (trail != 0x7F) add({static_cast<char>(c), static_cast<char>(trail)});
    }
  }
  return all;
}

TEST(Kana, AgreesWithThePlatformForEveryCharacterAndSoundMarkAfterIt) {
  wchar_t codePage[8] = {};
  GetLocaleInfoW(0x0411, LOCALE_IDEFAULTANSICODEPAGE, codePage, 8);
  ASSERT_EQ(std::wstring(codePage), L"932");
  const std::vector<std::string> all = AllCharacters();
  EXPECT_GT(all.size(), 9000u);
  for (const KanaForm form : {KanaForm::kFullHiragana, KanaForm::kFullKatakana, KanaForm::kHalfKatakana}) {
    for (const std::string& character : all) {
      for (const char* after : {"", "ﾞ", "ﾟ", "゛", "゜", "か", "ｶﾞ"}) {
        const std::string text = character + after;
        ASSERT_EQ(MapKana(text, form), Platform(text, form))
            << text932::ToUtf8(text) << " in form " << static_cast<int>(form);
      }
    }
  }
}

TEST(Kana, AgreesWithThePlatformForStringsOfKana) {
  std::vector<std::string> pieces;
  for (const std::string& character : AllCharacters()) {
    const char lead = character[0];
    if (character.size() == 1 || lead == '\x81' || lead == '\x82' || lead == '\x83')
      pieces.push_back(character);
  }
  unsigned state = 12345;  // the same strings in every run
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (int length = 0; length < 8; ++length) {
      state = state * 1103515245u + 12345u;
      const std::size_t pick = state >> 16;
      text += pick % 4 == 0 ? "ﾞ" : pieces[pick % pieces.size()];
    }
    for (const KanaForm form : {KanaForm::kFullHiragana, KanaForm::kFullKatakana, KanaForm::kHalfKatakana}) {
      ASSERT_EQ(MapKana(text, form), Platform(text, form)) << text932::ToUtf8(text);
    }
  }
}

#endif

}  // namespace
}  // namespace kova::foundation
