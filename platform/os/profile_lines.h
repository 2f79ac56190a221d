#pragma once

// The grammar of a private-profile text, line by line: what ProfileText and EditProfileText have in common.
// Texts are code page 932, where the second byte of a character can look like a bracket or a letter. No text
// is copied and nothing is allocated; every walk is one pass, whatever the bytes are.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kova::os {

/// One line of a text: [begin, end) without its line end, [end, next) the line end ("\r\n", "\n", "\r" or
/// nothing).
struct ProfileLine {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t next = 0;
};

/// Walks the lines of a text. A carriage return alone ends a line too.
class ProfileLineReader {
 public:
  explicit ProfileLineReader(std::string_view text, std::size_t from = 0);

  /// The next line in `line`; false at the end of the text. A last line without line end is a line unless
  /// empty.
  [[nodiscard]] bool Next(ProfileLine& line);

 private:
  std::string_view text_;
  std::size_t at_;
  std::size_t nextReturn_;  // the first CR at or after at_, or the text's size
  std::size_t nextFeed_;    // the same for LF
};

enum class ProfileLineKind { kBlank, kComment, kSection, kKey };

/// What a line says. `name` is the section's or key's name, `value` the text after the equals sign: both
/// without the blanks around them, as they stand (quotes and NULs included).
struct ProfileEntry {
  ProfileLineKind kind = ProfileLineKind::kBlank;
  std::string_view name;
  std::string_view value;
  bool hasValue = false;  // false for a key without "="
};

/// Where the line that holds `at` ends, without its line end.
std::size_t ProfileLineEnd(std::string_view text, std::size_t at);

/// The next line at or after `from` that may open a section, as its first character that is not blank is "[":
/// the position of that bracket, or npos. Cheaper than reading line by line.
std::size_t FindProfileSection(std::string_view text, std::size_t from);

/// Takes a line (without its line end) apart.
ProfileEntry ParseProfileLine(std::string_view line);

/// `text` without the characters around it that the format takes for blanks: space, tab, line and page breaks
/// and the old end-of-file mark 0x1A. The ideographic space is not one.
std::string_view TrimProfileBlanks(std::string_view text);

/// `text` up to its first NUL: what a reader of C strings sees of a name or value.
std::string_view CutAtNul(std::string_view text);

/// True when two names are the same without regard to the case of ASCII letters.
bool SameProfileName(std::string_view a, std::string_view b);

/// A hash consistent with SameProfileName: equal names hash alike.
std::uint32_t HashProfileName(std::string_view name);

}  // namespace kova::os
