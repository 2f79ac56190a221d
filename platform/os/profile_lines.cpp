#include "platform/os/profile_lines.h"

#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r') || c == '\x1A'; }

constexpr char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

std::size_t SkipBlanks(std::string_view line) {
  std::size_t at = 0;
  while (at < line.size() && IsBlank(line[at])) ++at;
  return at;
}

std::size_t FindOrEnd(std::string_view text, char c, std::size_t from) {
  const std::size_t at = text.find(c, from);
  return at == std::string_view::npos ? text.size() : at;
}

}  // namespace

ProfileLineReader::ProfileLineReader(std::string_view text, std::size_t from)
    : text_(text),
      at_(from),
      nextReturn_(FindOrEnd(text, '\r', from)),
      nextFeed_(FindOrEnd(text, '\n', from)) {}

bool ProfileLineReader::Next(ProfileLine& line) {
  if (at_ >= text_.size()) return false;
  line.begin = at_;
  // Each search goes on from where it last stopped, so that a text with one kind of line end stays one pass.
  if (nextReturn_ < at_) nextReturn_ = FindOrEnd(text_, '\r', at_);
  if (nextFeed_ < at_) nextFeed_ = FindOrEnd(text_, '\n', at_);
  line.end = nextReturn_ < nextFeed_ ? nextReturn_ : nextFeed_;
  line.next = line.end;
  if (line.next < text_.size() && text_[line.next] == '\r') ++line.next;
  if (line.next < text_.size() && text_[line.next] == '\n') ++line.next;
  at_ = line.next;
  return true;
}

std::string_view TrimProfileBlanks(std::string_view text) {
  text.remove_prefix(SkipBlanks(text));
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view CutAtNul(std::string_view text) { return text.substr(0, text.find('\0')); }

std::size_t ProfileLineEnd(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] != '\r' && text[at] != '\n') ++at;
  return at;
}

std::size_t FindProfileSection(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find('[', from); at != std::string_view::npos; at = text.find('[', at + 1)) {
    // A bracket that is half of a character follows a lead byte, which is no blank.
    std::size_t begin = at;
    while (begin > 0 && IsBlank(text[begin - 1]) && text[begin - 1] != '\n' && text[begin - 1] != '\r')
      --begin;
    if (begin == 0 || text[begin - 1] == '\n' || text[begin - 1] == '\r') return at;
  }
  return std::string_view::npos;
}

ProfileEntry ParseProfileLine(std::string_view line) {
  ProfileEntry entry;
  line = TrimProfileBlanks(line);
  if (line.empty()) return entry;
  if (line.front() == ';') {
    entry.kind = ProfileLineKind::kComment;
    return entry;
  }
  if (line.front() == '[') {
    // What follows the last bracket is nobody's; a line without one is a key like any other.
    const std::size_t close = text932::FindLast(line, ']');
    if (close != std::string_view::npos) {
      entry.kind = ProfileLineKind::kSection;
      entry.name = TrimProfileBlanks(line.substr(1, close - 1));
      return entry;
    }
  }
  entry.kind = ProfileLineKind::kKey;
  const std::size_t equals = line.find('=');  // never a second byte
  entry.hasValue = equals != std::string_view::npos;
  entry.name = TrimProfileBlanks(line.substr(0, equals));
  if (entry.hasValue) entry.value = TrimProfileBlanks(line.substr(equals + 1));
  return entry;
}

bool SameProfileName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a == b) return true;
  for (std::size_t i = 0; i < a.size();) {
    const std::size_t length = text932::CharLength(a, i);
    if (length != text932::CharLength(b, i)) return false;
    if (length == 1 ? LowerAscii(a[i]) != LowerAscii(b[i]) : a.substr(i, 2) != b.substr(i, 2)) return false;
    i += length;
  }
  return true;
}

std::uint32_t HashProfileName(std::string_view name) {
  std::uint32_t hash = 2166136261u;
  const auto mix = [&hash](char c) { hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u; };
  for (std::size_t i = 0; i < name.size();) {
    const std::size_t length = text932::CharLength(name, i);
    mix(length == 1 ? LowerAscii(name[i]) : name[i]);
    if (length == 2) mix(name[i + 1]);
    i += length;
  }
  return hash;
}

}  // namespace kova::os
