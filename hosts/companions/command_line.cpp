#include "hosts/companions/command_line.h"

#include <algorithm>
#include <array>

#include "platform/text932/cp932.h"

namespace kova::companions {
namespace {

struct Place {
  std::size_t begin = std::string_view::npos;  // of what stands before the key
  std::size_t end = 0;                         // behind the key
  bool Found() const { return begin != std::string_view::npos; }
};

// A key with a blank before it. Where a value ends in half a character, the system may have put a middle dot
// for that half and the blank together.
Place FindKey(std::string_view line, std::string_view key, bool last) {
  for (const std::string_view before : {" ", "・"}) {
    const std::string text = std::string(before).append(key);
    const std::size_t at = last ? line.rfind(text) : line.find(text);
    if (at != std::string_view::npos) return {before == " " ? at : at + before.size(), at + text.size()};
  }
  return {};
}

// Cuts the value behind the last `key` off `line`.
bool TakeLast(std::string_view& line, std::string_view key, std::string_view& value) {
  const Place place = FindKey(line, key, true);
  if (!place.Found()) return false;
  value = line.substr(place.end);
  line = line.substr(0, place.begin);
  return true;
}

// Cuts the value up to the first `key`, and the key, off the beginning of `line`.
bool TakeFirst(std::string_view& line, std::string_view key, std::string_view& value) {
  const Place place = FindKey(line, key, false);
  if (!place.Found()) return false;
  value = line.substr(0, place.begin);
  line = line.substr(place.end);
  return true;
}

bool TakePrefix(std::string_view& line, std::string_view prefix) {
  if (!line.starts_with(prefix)) return false;
  line.remove_prefix(prefix.size());
  return true;
}

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool SameCharacter(std::string_view a, std::string_view b) {
  return a.size() == b.size() && (a.size() == 1 ? Lower(a[0]) == Lower(b[0]) : a == b);
}

}  // namespace

std::string_view BehindProgramName(std::string_view commandLine) {
  const bool quoted = commandLine.starts_with('"');
  const std::size_t end = quoted ? commandLine.find('"', 1) : commandLine.find_first_of(" \t");
  if (end == std::string_view::npos) return {};
  commandLine.remove_prefix(end + (quoted ? 1 : 0));
  commandLine.remove_prefix(std::min(commandLine.find_first_not_of(" \t"), commandLine.size()));
  return commandLine;
}

std::optional<MailCommand> ParseMailCommand(std::string_view line, LastKey last) {
  MailCommand mail;
  const bool complete = TakePrefix(line, "/TO:") && TakeFirst(line, "/SUBJECT:", mail.to) &&
                        TakeFirst(line, "/BODY:", mail.subject) &&
                        (last == LastKey::kStaffId || TakeLast(line, "/ITEMID:", mail.itemId)) &&
                        TakeLast(line, "/STAFFID:", mail.staffId) &&
                        TakeLast(line, "/PATIENTID:", mail.patientId);
  if (!complete) return std::nullopt;
  mail.body = line;
  return mail;
}

std::optional<EmlCommand> ParseEmlCommand(std::string_view line) {
  constexpr std::string_view kUnsave = " /UNSAVE";
  if (!TakePrefix(line, "/EML:")) return std::nullopt;
  const bool doNotKeep = line.ends_with(kUnsave);
  if (doNotKeep) line.remove_suffix(kUnsave.size());
  return EmlCommand{line, doNotKeep};
}

std::optional<DayCommand> ParseDayCommand(std::string_view line) {
  DayCommand day;
  if (!TakePrefix(line, "/TO:") || !TakeLast(line, "/DATE:", day.date)) return std::nullopt;
  day.to = line;
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (day.date.size() != 8 || !std::all_of(day.date.begin(), day.date.end(), isDigit)) return std::nullopt;
  return day;
}

bool FitsPattern(std::string_view name, std::string_view pattern) {
  if (pattern.empty()) return name.empty();
  if (pattern.front() == '*') {
    for (std::size_t at = 0;; at += text932::CharLength(name, at)) {
      if (FitsPattern(name.substr(at), pattern.substr(1))) return true;
      if (at == name.size()) return false;
    }
  }
  if (name.empty()) return false;
  const std::string_view wanted = pattern.substr(0, text932::CharLength(pattern, 0));
  const std::string_view given = name.substr(0, text932::CharLength(name, 0));
  return (wanted == "?" || SameCharacter(given, wanted)) &&
         FitsPattern(name.substr(given.size()), pattern.substr(wanted.size()));
}

}  // namespace kova::companions
