#include "platform/os/profile_text.h"

#include "platform/os/profile_encoding.h"
#include "platform/os/profile_lines.h"

namespace kova::os {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

std::string_view LineAt(std::string_view text, const ProfileLine& line) {
  return text.substr(line.begin, line.end - line.begin);
}

// One matching pair of quotes around a value is not part of it. Quotes are never second bytes.
std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

ProfileText::ProfileText(std::string bytes) : text_(ProfileBytesTo932(std::move(bytes))) {}

std::optional<std::string_view> ProfileText::Find(std::string_view section, std::string_view key) const {
  key = TrimProfileBlanks(CutAtNul(key));
  const std::uint32_t hash = HashProfileName(key);
  for (const Key& candidate : Resolve(TrimProfileBlanks(CutAtNul(section))).keys) {
    if (candidate.hash != hash) continue;
    const std::size_t end = ProfileLineEnd(text_, candidate.line);
    const ProfileEntry entry =
        ParseProfileLine(std::string_view(text_).substr(candidate.line, end - candidate.line));
    if (!SameProfileName(CutAtNul(entry.name), key)) continue;
    if (!entry.hasValue) return std::nullopt;
    return WithoutQuotes(CutAtNul(entry.value));
  }
  return std::nullopt;
}

const ProfileText::Section& ProfileText::Resolve(std::string_view section) const {
  for (const Section& known : sections_) {
    if (SameProfileName(known.name, section)) return known;
  }
  Section& added = sections_.emplace_back();
  added.name = section;
  const std::size_t body = FindBody(section);
  if (body != kNowhere) IndexKeys(body, added.keys);
  return added;
}

std::size_t ProfileText::FindBody(std::string_view section) const {
  if (section.empty()) return 0;
  const std::string_view text = text_;
  for (std::size_t at = FindProfileSection(text, 0); at != kNowhere; at = FindProfileSection(text, at + 1)) {
    const std::size_t end = ProfileLineEnd(text, at);
    const ProfileEntry entry = ParseProfileLine(text.substr(at, end - at));
    const bool match =
        entry.kind == ProfileLineKind::kSection && SameProfileName(CutAtNul(entry.name), section);
    if (match) return end;
  }
  return kNowhere;
}

void ProfileText::IndexKeys(std::size_t from, std::vector<Key>& keys) const {
  ProfileLineReader reader(text_, from);
  for (ProfileLine line; reader.Next(line);) {
    const ProfileEntry entry = ParseProfileLine(LineAt(text_, line));
    if (entry.kind == ProfileLineKind::kSection) return;
    if (entry.kind != ProfileLineKind::kKey) continue;
    keys.push_back({HashProfileName(CutAtNul(entry.name)), static_cast<std::uint32_t>(line.begin)});
  }
}

std::int32_t ProfileInt(std::string_view value) {
  std::size_t at = 0;
  while (at < value.size() && static_cast<unsigned char>(value[at]) <= ' ') ++at;
  bool negative = false;
  if (at < value.size() && (value[at] == '-' || value[at] == '+')) negative = value[at++] == '-';
  unsigned base = 10;
  if (at + 1 < value.size() && value[at] == '0') {
    const char mark = value[at + 1];
    base = mark == 'x' ? 16 : mark == 'o' ? 8 : mark == 'b' ? 2 : 10;
    if (base != 10) at += 2;
  }
  std::uint32_t number = 0;
  for (; at < value.size(); ++at) {
    const char c = value[at];
    const int digit = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                             : 16;
    if (static_cast<unsigned>(digit) >= base) break;
    number = number * base + static_cast<unsigned>(digit);
  }
  return static_cast<std::int32_t>(negative ? 0u - number : number);
}

}  // namespace kova::os
