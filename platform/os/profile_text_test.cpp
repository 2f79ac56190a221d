#include "platform/os/profile_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#endif

namespace kova::os {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr const char* kDefault = "<default>";

struct Row {
  std::string text;
  const char* section;
  const char* key;
  std::string expected;
};

// Every row is also asked of the platform's own function (below).
const std::vector<Row>& Rows() {
  static const std::vector<Row> rows = {
      {"[A]\r\nk=v\r\n", "a", "K", "v"},
      {"[A]\r\nk=v", "A", "k", "v"},
      {"", "A", "k", kDefault},
      {"[A]\nk=\n", "A", "k", ""},
      {"[A]\nk\nk=v", "A", "k", kDefault},
      {"[A]\nk==v", "A", "k", "=v"},
      {"[A]\n k \t=\t = v \n", "A", " k ", "= v"},
      {"[A]\nk=1\nK=2", "A", "k", "1"},
      {"[A]\nk=v\n[B]\nj=1\n[a]\nm=2", "A", "m", kDefault},
      {"[ A ]\nk=v", " A", "k", "v"},
      {"  [A] rest\nk=v", "A", "k", "v"},
      {"[A]B]\nk=v", "A]B", "k", "v"},
      {"[A]B]\nk=v", "A", "k", kDefault},
      {"[Z]\n[A\nk=v", "Z", "k", "v"},
      {"[Z]\n[A=3\nk=v", "Z", "[A", "3"},
      {"x[A]\nk=v", "A", "k", kDefault},
      {"k=v\n[A]\n", "", "k", "v"},
      {"[]\nk=v", "", "k", kDefault},
      {"[A]\n=v", "A", "", "v"},
      // quotes
      {"[A]\nk = \"v \" ", "A", "k", "v "},
      {"[A]\nk='v'", "A", "k", "v"},
      {"[A]\nk='v\"", "A", "k", "'v\""},
      {"[A]\nk=\"", "A", "k", "\""},
      {"[A]\nk=\"\"", "A", "k", ""},
      {"[A]\nk=\"\"v\"\"", "A", "k", "\"v\""},
      {"[A]\n\"k\"=v", "A", "k", kDefault},
      // comments
      {"[A]\n;k=v\n ; k=w\nk=x ; y", "A", "k", "x ; y"},
      {"[A]\n#k=w", "A", "#k", "w"},
      // line ends, blanks
      {"[A]\rk=v\rj=w", "A", "j", "w"},
      {"[A]\nk=v\rj=w\n", "A", "j", "w"},
      {"[A]\n\r\n\rk=v\n\r", "A", "k", "v"},
      {"\x1A[A]\n\x1A\nk=v\x1A", "A", "k", "v"},
      {"[A]\nk=\v\fv\v", "A", "k", "v"},
      {"[A]\nk=\bv\x1C", "A", "k", "\bv\x1C"},
      {"[A]\nk=\x81\x40v\x81\x40\n", "A", "k", "\x81\x40v\x81\x40"},
      // NULs
      {"[A]\nk=v\0w\n"s, "A", "k", "v"},
      {"[A]\nk\0x=v\n"s, "A", "k", "v"},
      {"[A\0B]\nk=v\n"s, "A", "k", "v"},
      {"[A]\n\0k=v\n"s, "A", "k", kDefault},
      {"[A]\nk=\"v\0\"\n"s, "A", "k", "\"v"},
      {"[A]\nk='v'\0x\n"s, "A", "k", "v"},
      // second bytes that look like something else
      {"[A]\nk=\x95\x5C\n", "A", "k", "\x95\x5C"},
      {"[\x81\x5D]\nk=v", "\x81\x5D", "k", "v"},
      {"[A]\n\x83\x41=v\n", "A", "\x83\x41", "v"},
      // byte-order marks
      {"\xEF\xBB\xBF[A]\nk=\xE3\x81\x82v\n", "A", "k", "\x82\xA0v"},
      {"\xFF\xFE[\0A\0]\0\n\0k\0=\0\x42\x30v\0\n\0"s, "A", "k", "\x82\xA0v"},
      {"\xFF\xFE[\0A\0]\0\n\0k\0=\0v\0\n\0x"s, "A", "k", "v"},
      {"\xFE\xFF\0[\0A\0]\0\n\0k\0=\0v\0\n"s, "A", "k", "v"},
      {"[\0A\0]\0\n\0k\0=\0v\0\n\0"s, "A", "k", kDefault},
      {"[A]\nk=" + std::string(5000, 'x') + "\n", "A", "k", std::string(5000, 'x')},
  };
  return rows;
}

std::string Ours(const std::string& text, const char* section, const char* key) {
  return std::string(ProfileText(text).Find(section, key).value_or(kDefault));
}

TEST(ProfileText, FindsWhatTheFormatSays) {
  for (const Row& row : Rows()) {
    EXPECT_EQ(Ours(row.text, row.section, row.key), row.expected) << testing::PrintToString(row.text);
  }
}

// What differs from Wine on purpose: names in code page 932 whatever the system's is, bytes kept as they are.
TEST(ProfileText, StepsByCharactersAndKeepsBytes) {
  EXPECT_EQ(Ours("[A]\n\x83\x41=v\n", "A", "\x83\x61"), kDefault);  // ア and ヂ: 'A' and 'a' as second bytes
  EXPECT_EQ(Ours("[\x81\x5D\nk=v\n", "\x81", "k"), kDefault);       // the bracket is half a character
  EXPECT_EQ(Ours("[A]\nk=v\x95\n", "A", "k"), "v\x95");
  EXPECT_EQ(Ours("[A]\nk=\x85\x9F\xA0\xFD\n", "A", "k"), "\x85\x9F\xA0\xFD");
  EXPECT_EQ(Ours("[A]\n;k=v\n", "A", ";k"), kDefault);
  EXPECT_EQ(Ours("\xEF\xBB\xBF[A]\nk=\xC3\xA9\xF0\x9F\x98\x80\xFFz\n", "A", "k"), "???z");
}

TEST(ProfileText, ManyLookUpsInOneText) {
  const ProfileText text("x=0\r\n[A]\r\na=1\r\nb=2\r\n[B]\r\na=3\r\n");
  EXPECT_EQ(text.Find("B", "a"), "3"sv);
  EXPECT_EQ(text.Find("A", "b"), "2"sv);
  EXPECT_EQ(text.Find("a", "A"), "1"sv);
  EXPECT_EQ(text.Find("C", "a"), std::nullopt);
  EXPECT_EQ(text.Find("C", "a"), std::nullopt);
  EXPECT_EQ(text.Find("", "x"), "0"sv);
  EXPECT_EQ(text.Find("A", "x"), std::nullopt);
}

// Shapes of 4 MB at which a search from every line to the end of the text would never come back.
TEST(ProfileText, HugeTextsAreOnePass) {
  constexpr std::size_t kSize = std::size_t{4} << 20;
  std::string random(kSize, '\0');
  std::mt19937 generator(1);
  for (char& c : random) c = static_cast<char>(generator());
  for (std::string text : {random, std::string(kSize, '\r'), std::string(kSize, '\n'),
                           std::string(kSize, '['), std::string(kSize, '\x81')}) {
    text += "\n[A]\nk=v\n";
    EXPECT_EQ(Ours(text, "A", "k"), "v");
    const auto edited = EditProfileText(text, "A", "k", "w");
    ASSERT_TRUE(edited.has_value());
    EXPECT_EQ(edited->size(), text.size());
    EXPECT_TRUE(edited->ends_with("\n[A]\nk=w\n"));
  }
}

#ifdef _WIN32
// An empty file of a name that no other program has. (A TemporaryFolder's name is not for every code page.)
std::string NewFile() {
  char folder[MAX_PATH + 1], file[MAX_PATH + 1];
  GetTempPathA(sizeof folder, folder);
  GetTempFileNameA(folder, "kov", 0, file);
  return file;
}
#endif

TEST(ProfileText, NumbersAsThePlatformReadsThem) {
  const struct {
    const char* text;
    std::int32_t expected;
  } rows[] = {{"5", 5},
              {"-5", -5},
              {" 7", 7},
              {"+3", 3},
              {"0x1F", 31},
              {"0b11", 3},
              {"0o17", 15},
              {"010", 10},
              {"12abc", 12},
              {"abc", 0},
              {"99999999999", 1215752191},
              {"0x", 0},
              {"0X1F", 0},
              {"-", 0},
              {"4294967295", -1},
              {"-2147483648", -2147483647 - 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(ProfileInt(row.text), row.expected) << row.text;
#ifdef _WIN32
    const std::string path = NewFile();
    const char* file = path.c_str();
    WritePrivateProfileStringA("A", "k", row.text, file);
    EXPECT_EQ(static_cast<std::int32_t>(GetPrivateProfileIntA("A", "k", 77, file)), row.expected) << row.text;
    DeleteFileA(file);
#endif
  }
}

#ifdef _WIN32

// The platform's answer for a text, through a file of its own.
class Oracle {
 public:
  std::string Ask(const std::string& text,
                  const std::vector<std::pair<const char*, const char*>>& questions) {
    const std::string name = NewFile();
    FILE* file = fopen(name.c_str(), "wb");
    fwrite(text.data(), 1, text.size(), file);
    fclose(file);
    std::string answers;
    for (const auto& [section, key] : questions) {
      std::vector<char> buffer(8000);
      GetPrivateProfileStringA(section, key, kDefault, buffer.data(), static_cast<DWORD>(buffer.size()),
                               name.c_str());
      answers.append(buffer.data()).append("|");
    }
    DeleteFileA(name.c_str());
    return answers;
  }
};

bool IsAscii(const std::string& text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

TEST(ProfileTextOracle, EveryRowAgrees) {
  Oracle oracle;
  for (const Row& row : Rows()) {
    if (GetACP() != 932 && !IsAscii(row.text)) continue;
    EXPECT_EQ(oracle.Ask(row.text, {{row.section, row.key}}), row.expected + "|")
        << testing::PrintToString(row.text);
  }
}

TEST(ProfileTextOracle, GeneratedTextsAgree) {
  const std::vector<std::string> pieces = {"\n",   "\r\n", "\r",  "\n",  "\r\n", "=",  "=",   "k",
                                           "K",    "A",    "[A]", "[b]", "[A]",  "k=", "kk=", "[",
                                           "]",    ";",    " ",   "\t",  "\"",   "'",  "v",   "k=\"v\"",
                                           "\x1A", "\0"s,  "#x",  "xyz", "[a",   "\v"};
  const std::vector<std::string> doubles = {"\x95\x5C", "\x81\x5D", "\x83\x41",
                                            "\x83\x61", "\x81\x40", "\xB1"};
  const std::vector<std::pair<const char*, const char*>> questions = {
      {"A", "k"}, {"a", "kk"},       {"B", "k"},   {"", "k"},
      {"A", ""},  {"A", "\x83\x41"}, {"A", "xyz"}, {"B", "K "}};
  Oracle oracle;
  std::mt19937 generator(932);
  for (int i = 0; i < 1500; ++i) {
    std::string text = i % 3 != 0 ? "[A]\n" : "";
    for (unsigned n = generator() % 24; n > 0; --n) {
      const bool wide = GetACP() == 932 && generator() % 6 == 0;
      text += wide ? doubles[generator() % doubles.size()] : pieces[generator() % pieces.size()];
    }
    const ProfileText ours(text);
    std::string answers;
    for (const auto& [section, key] : questions)
      answers.append(ours.Find(section, key).value_or(kDefault)).append("|");
    ASSERT_EQ(answers, oracle.Ask(text, questions)) << i << ' ' << testing::PrintToString(text);
  }
}

#endif

}  // namespace
}  // namespace kova::os
