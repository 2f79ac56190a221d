#include <utility>

#include "platform/os/profile_encoding.h"
#include "platform/os/profile_lines.h"
#include "platform/os/profile_text.h"

namespace kova::os {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

/// Where a section and a key stand in a text.
struct Place {
  std::size_t sectionBegin = kNowhere;  // of the header's line; kNowhere when there is no such section
  std::size_t sectionEnd = 0;           // the next header's line or the end of the text
  std::size_t addAt = 0;                // behind the section's last line that is not blank
  ProfileLine keyLine;
  bool keyFound = false;
  bool hasValue = false;       // of the key
  std::size_t valueBegin = 0;  // where the key's name ends when it has no value
  std::size_t valueEnd = 0;
};

class Editor {
 public:
  Editor(std::string_view text, ProfileBytes bytes) : text_(text), bytes_(bytes) {}

  /// By names in code page 932: the lines are taken apart as their reader sees them, since in another
  /// encoding the same characters may make other lines. (Two characters that each stand for an undefined byte
  /// become one pair, in which a bracket is none; a character that the code page lacks is read as "?".)
  Place Find(std::string_view section, std::string_view key) const;
  std::string RemoveSection(const Place& place) const;
  std::string RemoveKey(const Place& place) const;
  std::string SetValue(const Place& place, std::string_view value) const;
  std::string AddKey(const Place& place, std::string_view line) const;
  std::string AddSection(std::string_view header, std::string_view line) const;

 private:
  void PutKey(const ProfileLine& line, std::string_view read, const ProfileEntry& entry, Place& place) const;
  std::string Replace(std::size_t begin, std::size_t end, std::string_view with) const;
  std::string InsertLines(std::size_t at, std::string_view first, std::string_view second) const;
  std::string_view LineEndBefore(std::size_t at) const;

  std::string_view text_;
  ProfileBytes bytes_;
};

void Editor::PutKey(const ProfileLine& line, std::string_view read, const ProfileEntry& entry,
                    Place& place) const {
  const auto offset = [&](const char* position) {
    const auto length = static_cast<std::size_t>(position - read.data());
    const std::string_view bytes = text_.substr(line.begin, line.end - line.begin);
    return line.begin + (bytes_ == ProfileBytes::kUtf8 ? ProfileLengthInUtf8(bytes, length) : length);
  };
  const std::string_view value = entry.hasValue ? entry.value : entry.name.substr(entry.name.size());
  place.keyFound = true;
  place.keyLine = line;
  place.hasValue = entry.hasValue;
  place.valueBegin = offset(value.data());
  place.valueEnd = offset(value.data() + value.size());
}

Place Editor::Find(std::string_view section, std::string_view key) const {
  Place place;
  std::string converted;
  ProfileLineReader reader(text_);
  for (ProfileLine line; reader.Next(line);) {
    std::string_view read = text_.substr(line.begin, line.end - line.begin);
    if (bytes_ == ProfileBytes::kUtf8) read = converted = ProfileLineTo932(read);
    const ProfileEntry entry = ParseProfileLine(read);
    const bool inside = place.sectionBegin != kNowhere;
    if (entry.kind == ProfileLineKind::kSection) {
      if (inside) {
        place.sectionEnd = line.begin;
        return place;
      }
      if (SameProfileName(CutAtNul(entry.name), section)) {
        place.sectionBegin = line.begin;
        place.addAt = line.next;
      }
    } else if (inside && entry.kind != ProfileLineKind::kBlank) {
      place.addAt = line.next;
      const bool match = !place.keyFound && entry.kind == ProfileLineKind::kKey &&
                         SameProfileName(CutAtNul(entry.name), key);
      if (match) PutKey(line, read, entry, place);
    }
  }
  place.sectionEnd = text_.size();
  return place;
}

std::string Editor::Replace(std::size_t begin, std::size_t end, std::string_view with) const {
  std::string out;
  out.reserve(text_.size() + with.size());
  out += text_.substr(0, begin);
  out += with;
  out += text_.substr(end);
  return out;
}

std::string Editor::RemoveSection(const Place& place) const {
  return Replace(place.sectionBegin, place.sectionEnd, "");
}

std::string Editor::RemoveKey(const Place& place) const {
  return Replace(place.keyLine.begin, place.keyLine.next, "");
}

std::string Editor::SetValue(const Place& place, std::string_view value) const {
  return Replace(place.valueBegin, place.valueEnd, (place.hasValue ? "" : "=") + std::string(value));
}

// The line end that a new line behind `at` takes: its neighbour's, so that a file keeps the one it has.
std::string_view Editor::LineEndBefore(std::size_t at) const {
  const std::string_view before = text_.substr(0, at);
  if (before.ends_with("\r\n")) return "\r\n";
  if (before.ends_with('\n')) return "\n";
  if (before.ends_with('\r')) return "\r";
  ProfileLine first;
  if (!ProfileLineReader(text_).Next(first) || first.next == first.end) return "\r\n";
  return text_.substr(first.end, first.next - first.end);
}

std::string Editor::InsertLines(std::size_t at, std::string_view first, std::string_view second) const {
  const std::string_view lineEnd = LineEndBefore(at);
  const bool unfinished = at > 0 && text_[at - 1] != '\n' && text_[at - 1] != '\r';
  std::string lines;
  if (unfinished) lines += lineEnd;
  for (const std::string_view line : {first, second}) {
    if (!line.empty()) (lines += line) += lineEnd;
  }
  return Replace(at, at, lines);
}

std::string Editor::AddKey(const Place& place, std::string_view line) const {
  return InsertLines(place.addAt, line, "");
}

std::string Editor::AddSection(std::string_view header, std::string_view line) const {
  return InsertLines(text_.size(), header, line);
}

/// What is to be written, in the bytes of the text that it goes into.
struct Assignment {
  std::string section, key, value;

  std::string Header() const { return "[" + section + "]"; }
  std::string Line() const { return key + "=" + value; }

  /// True when section and key, written as they are, are found again under their code page 932 names.
  bool ReadsBack(std::string_view sectionName, std::string_view keyName, ProfileBytes bytes) const {
    std::string alone = bytes == ProfileBytes::kUtf8 ? "\xEF\xBB\xBF" : "";
    alone += Header() + "\n" + Line() + "\n";
    return !section.empty() && !key.empty() &&
           ProfileText(std::move(alone)).Find(sectionName, keyName).has_value();
  }
};

// Blanks around a value or behind a NUL or line break are not read again; not written, they harm nobody.
std::string_view Readable(std::string_view text) { return TrimProfileBlanks(CutAtNul(text)); }

Assignment MakeAssignment(std::string_view section, std::string_view key, std::string_view value,
                          ProfileBytes bytes) {
  return {ProfileTextFrom932(Readable(section), bytes), ProfileTextFrom932(Readable(key), bytes),
          ProfileTextFrom932(Readable(value.substr(0, value.find_first_of("\r\n"))), bytes)};
}

}  // namespace

std::optional<std::string> EditProfileText(std::string_view text, std::string_view section,
                                           std::optional<std::string_view> key,
                                           std::optional<std::string_view> value) {
  const EncodedProfile encoded(text);
  const ProfileBytes bytes = encoded.Bytes();
  const std::string_view name = key.value_or("any");
  const Assignment wanted = MakeAssignment(section, name, value.value_or(""), bytes);
  if (!wanted.ReadsBack(section, name, bytes)) return std::nullopt;

  const Editor editor(encoded.Body(), bytes);
  const Place place = editor.Find(Readable(section), Readable(name));
  const bool sectionFound = place.sectionBegin != kNowhere;
  if (!key) return sectionFound ? encoded.WithBody(editor.RemoveSection(place)) : std::string(text);
  if (!value) return place.keyFound ? encoded.WithBody(editor.RemoveKey(place)) : std::string(text);
  if (place.keyFound) return encoded.WithBody(editor.SetValue(place, wanted.value));
  if (sectionFound) return encoded.WithBody(editor.AddKey(place, wanted.Line()));
  return encoded.WithBody(editor.AddSection(wanted.Header(), wanted.Line()));
}

}  // namespace kova::os
