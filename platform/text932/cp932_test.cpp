#include "platform/text932/cp932.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace kova::text932 {
namespace {

// What the platform says of one character's bytes; empty where it has none.
std::u16string PlatformDecode(std::string_view bytes) {
#ifdef _WIN32
  wchar_t out[4];
  const int n =
      MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), out, 4);
  return std::u16string(out, out + n);
#else
  static const iconv_t converter = iconv_open("UTF-16LE", "CP932");
  char* in = const_cast<char*>(bytes.data());
  std::size_t inLeft = bytes.size();
  char16_t out[4];
  char* to = reinterpret_cast<char*>(out);
  std::size_t outLeft = sizeof out;
  if (iconv(converter, &in, &inLeft, &to, &outLeft) == static_cast<std::size_t>(-1) || inLeft != 0) {
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    return {};
  }
  return std::u16string(out, reinterpret_cast<char16_t*>(to));
#endif
}

TEST(Cp932, EveryCharacterAgreesWithThePlatform) {
  int compared = 0;
  for (int lead = 0x81; lead <= 0xFC; ++lead) {
    for (int trail = 0x40; trail <= 0xFC; ++trail) {
      const char pair[] = {static_cast<char>(lead), static_cast<char>(trail)};
      const std::string_view text(pair, 2);
      if (CharLength(text, 0) != 2) continue;
      const std::u16string expected = PlatformDecode(text);
      const std::u16string ours = ToUtf16(text);
      if (expected.size() == 1) {
        EXPECT_EQ(ours, expected) << std::hex << lead << ' ' << trail;
        ++compared;
      }
      std::string back;
      ASSERT_TRUE(FromUtf16(ours, back)) << std::hex << lead << ' ' << trail;
      EXPECT_EQ(ToUtf16(back), ours) << std::hex << lead << ' ' << trail;
#ifdef _WIN32
      if (expected.size() == 1 && !(expected[0] >= 0xE000 && expected[0] < 0xF900)) {
        const wchar_t wide = static_cast<wchar_t>(expected[0]);
        char bytes[4];
        const int n = WideCharToMultiByte(932, 0, &wide, 1, bytes, 4, nullptr, nullptr);
        EXPECT_EQ(back, std::string(bytes, bytes + n)) << "preferred code of " << std::hex << lead << trail;
      }
#endif
    }
  }
  EXPECT_GT(compared, 7000);
}

TEST(Cp932, EveryPairOfBytesComesBackButForTheDoubles) {
  int changed = 0;
  for (int a = 1; a < 256; ++a) {
    for (int b = 1; b < 256; ++b) {
      const char bytes[] = {static_cast<char>(a), static_cast<char>(b), '\x01'};
      const std::string text(bytes, 3);
      std::string back;
      ASSERT_TRUE(FromUtf8(ToUtf8(text), back)) << a << ' ' << b;
      if (back != text) {
        ++changed;
        EXPECT_TRUE(a == 0x87 || a == 0xED || a == 0xEE || (a >= 0xFA && a <= 0xFC)) << a << ' ' << b;
      }
    }
  }
  EXPECT_EQ(changed, 398);  // NEC row 13 against JIS, NEC selection against IBM extensions
}

TEST(Cp932, HalfCharactersComeBackAndAreKeptApart) {
  for (const char* text :
       {"\x95", "abc\x95", "\x95\x5C\x95", "\x85\x9F\x41", "\x82\xA0\x80", "\xFF\xA0\xFD"}) {
    std::string back;
    ASSERT_TRUE(FromUtf8(ToUtf8(text), back));
    EXPECT_EQ(back, text);
  }
}

TEST(Cp932, SearchesStepByCharacters) {
  const std::string omote = "\x95\x5C";  // 表: its second byte is a backslash
  EXPECT_EQ(FindLast("C:\\" + omote, '\\'), 2u);
  EXPECT_FALSE(EndsWith(omote, '\\'));
  EXPECT_TRUE(EndsWith(omote + "\\", '\\'));
  EXPECT_EQ(FindFirst(omote + "\\", '\\'), 2u);
  EXPECT_EQ(ReplaceAll(omote + "\\x", "\\", "/"), omote + "/x");
  EXPECT_EQ(ReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(CutAtCharacter("a" + omote + omote, 4), "a" + omote);
  EXPECT_EQ(CutAtCharacter(omote, 1), "");
}

TEST(Cp932, RejectsWhatTheCodePageCannotHold) {
  std::string out;
  for (const char* bad :
       {"\xF0\x9F\x98\x80", "\xE2\x82\xAC", "\xC3\xA9", "\xFF", "\xE3\x81", "\xED\xA0\x80", "\xC0\x80"}) {
    EXPECT_FALSE(FromUtf8(bad, out)) << bad;
  }
  EXPECT_TRUE(FromUtf8("\xE3\x80\x9C\xC2\xA5", out));  // 〜 and ¥ as other systems write them
  EXPECT_EQ(out, "\x81\x60\x5C");
}

}  // namespace
}  // namespace kova::text932
