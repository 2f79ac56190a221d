#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "platform/os/profile_text.h"

namespace kova::os {
namespace {

using namespace std::string_literals;
using Text = std::optional<std::string_view>;

struct Row {
  std::string before;
  const char* section;
  Text key;
  Text value;
  Text after;  // nothing: refused
};

const Row kRows[] = {
    // a value is exchanged, and nothing else
    {"; c\r\n[A]\r\n;k=0\r\n K = 1 \r\nj=2", "a", "k", "9", "; c\r\n[A]\r\n;k=0\r\n K = 9 \r\nj=2"},
    {"[A]\nk=\"1\"\n", "A", "k", "x y", "[A]\nk=x y\n"},
    {"[A]\nk\nj=1\n", "A", "k", "2", "[A]\nk=2\nj=1\n"},
    {"[A]\nk=1\nk=2\n", "A", "k", "3", "[A]\nk=3\nk=2\n"},
    {"[A]\nk=1", "A", "k", "", "[A]\nk="},
    // a key is added to its section, in the line end of its neighbour
    {"[A]\r\nj=1\r\n\r\n[B]\r\nk=2\r\n", "A", "k", "3", "[A]\r\nj=1\r\nk=3\r\n\r\n[B]\r\nk=2\r\n"},
    {"[A]\n[B]\nk=2\n", "A", "k", "3", "[A]\nk=3\n[B]\nk=2\n"},
    {"[A]\nj=1", "A", "k", "3", "[A]\nj=1\nk=3\n"},
    {"[A]\rj=1", "A", "k", "3", "[A]\rj=1\rk=3\r"},
    {"[A]\nj=1\rm=2", "A", "k", "3", "[A]\nj=1\rm=2\nk=3\n"},
    {"[A]\nj=1\n; end", "A", "k", "3", "[A]\nj=1\n; end\nk=3\n"},
    {"[A]\nj=1\n[B]\n[A]\nk=2\n", "A", "k", "3", "[A]\nj=1\nk=3\n[B]\n[A]\nk=2\n"},
    // a section is added
    {"", "A", "k", "1", "[A]\r\nk=1\r\n"},
    {"[B]\nk=2", "A", "k", "1", "[B]\nk=2\n[A]\nk=1\n"},
    {"k=2\n", "A", "k", "1", "k=2\n[A]\nk=1\n"},
    {"[B]\r\nk=\x95", "A", "k", "1", "[B]\r\nk=\x95\r\n[A]\r\nk=1\r\n"},
    // removing
    {"[A]\nj=1\nk=2\n;c\n[B]\n", "A", "k", {}, "[A]\nj=1\n;c\n[B]\n"},
    {"[A]\nj=1\n", "A", "k", {}, "[A]\nj=1\n"},
    {"x\n[A]\nj=1\n;c\n[B]\nk=2\n", "A", {}, {}, "x\n[B]\nk=2\n"},
    {"[B]\nk=2\n", "A", {}, {}, "[B]\nk=2\n"},
    // a value ends at its first line break, as its reader would see it; what cannot be read again is refused
    {"[A]\nk=1\nj=2\n", "A", "k", "3\r\nj=4", "[A]\nk=3\nj=2\n"},
    {"[A]\nk=1\n", "A", "k", std::string_view("3\0x", 3), "[A]\nk=3\n"},
    {"[A]\nk=1 \n", "A", "k", " \t3 \x1A", "[A]\nk=3 \n"},
    {"[A]\n", "A", "k\nj", "1", {}},
    {"[A]\n", "A", "k=j", "1", {}},
    {"[A]\n", "A", "", "1", {}},
    {"[A]\n", "A", ";k", "1", {}},
    {"[A]\n", "A", "[k", "x]", {}},
    {"[A]\n", "", "k", "1", {}},
    {"[A]\n", "B\n[C", "k", "1", {}},
    {"[A]\n", "B\x95", "k", "1", {}},  // half a character would swallow the bracket
    {"[A]\n", "B]", "k\x95", "\x95\x5C", "[A]\n[B]]\nk\x95=\x95\x5C\n"},
    // other encodings stay what they are
    {"\xEF\xBB\xBF[A]\n", "B\x95", "k", "1", {}},
    {"\xEF\xBB\xBF[A]\nk=\xE3\x81\x82\xC3\xA9\n", "A", "j", "\x82\xA0",
     "\xEF\xBB\xBF[A]\nk=\xE3\x81\x82\xC3\xA9\nj=\xE3\x81\x82\n"},
    // a name is the one that its reader finds: "?" for what the code page lacks, "～" in either form
    {"\xEF\xBB\xBF[A]\n\xC3\xA9=1\n", "A", "?", "2", "\xEF\xBB\xBF[A]\n\xC3\xA9=2\n"},
    {"\xEF\xBB\xBF[A]\n\xE3\x80\x9C = 1\n", "A", "～", "2", "\xEF\xBB\xBF[A]\n\xE3\x80\x9C = 2\n"},
    // "\xEF\x9E\x82" is 0x82 alone; with the bracket it reads as one undefined pair, so no section begins
    {"\xEF\xBB\xBF[A]\n[k=1\n", "A", "[k", "\x82]", "\xEF\xBB\xBF[A]\n[k=\xEF\x9E\x82]\n"},
    {"\xEF\xBB\xBF[A]\n[k=\xEF\x9E\x82]\n", "A", "[k", "2", "\xEF\xBB\xBF[A]\n[k=2\n"},
    // no character in more bytes than it needs ends a line
    {"\xEF\xBB\xBF[A]\nj=\xC0\x8Ak=1\n", "A", "k", "2", "\xEF\xBB\xBF[A]\nj=\xC0\x8Ak=1\nk=2\n"},
};

TEST(EditProfileText, Table) {
  for (const Row& row : kRows) {
    const auto after = EditProfileText(row.before, row.section, row.key, row.value);
    EXPECT_EQ(Text(after), row.after)
        << testing::PrintToString(row.before) << " key " << std::string(row.key.value_or("(none)"));
  }
}

TEST(EditProfileText, Utf16KeepsItsUnits) {
  const std::string before =
      "\xFF\xFE[\0A\0]\0\n\0k\0=\0\x34\x12\x3D\xD8\0\xDE\n\0!"s;  // a pair and an odd byte
  const auto after = EditProfileText(before, "A", "j", "\x82\xA0");
  EXPECT_EQ(after, before.substr(0, before.size() - 1) + "j\0=\0\x42\x30\n\0!"s);
}

// Whatever the text and its encoding, the key reads back and every other key stays as it was.
TEST(EditProfileText, NoOtherKeyChanges) {
  const std::string_view pieces[] = {
      "\n",       "\r\n",     "\r",          "\n",   "=",        "k",   "j=1",  "[A]", "[B]", "]",
      ";",        " ",        "\"",          "\x95", "\x81\x5D", "m=2", "\x1A", "k=",  "n",   "\xEF\x9E\x82",
      "\xC0\x8A", "\xC2\xA5", "\xE3\x81\x82"};
  std::mt19937 generator(7);
  for (int i = 0; i < 6000; ++i) {
    std::string before = i % 2 == 0 ? "" : "\xEF\xBB\xBF";
    for (unsigned n = generator() % 24; n > 0; --n) before += pieces[generator() % std::size(pieces)];
    const auto after = EditProfileText(before, "A", "k", "new");
    ASSERT_TRUE(after.has_value());
    const ProfileText old(before);
    const ProfileText edited(*after);
    ASSERT_EQ(edited.Find("A", "k"), "new") << testing::PrintToString(before);
    for (const char* section : {"", "A", "B"}) {
      for (const char* key : {"k", "j", "m", "n", ""}) {
        if (section == std::string("A") && key == std::string("k")) continue;
        ASSERT_EQ(edited.Find(section, key), old.Find(section, key))
            << testing::PrintToString(before) << " [" << section << "] " << key;
      }
    }
    EXPECT_EQ(EditProfileText(*after, "A", "k", "new"), after);
  }
}

}  // namespace
}  // namespace kova::os
