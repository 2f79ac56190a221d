#include "postal/address_list.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <vector>

#include "platform/os/paths.h"
#include "postal/address_text.h"

namespace kova::postal {
namespace {

constexpr std::string_view kHeaderMark = "Convert File Version";
constexpr std::string_view kFlagsMark = "Flags ";
constexpr unsigned kAllColumns = (1u << kAddressColumns) - 1;
constexpr int kAbsent = -1;

// Most fields are short: a call costs more than looking at their first bytes.
std::size_t FindByte(std::string_view text, char c, std::size_t from) {
  constexpr std::size_t kNear = 12;
  const std::size_t near = std::min(text.size(), from + kNear);
  for (; from < near; ++from) {
    if (text[from] == c) return from;
  }
  if (from >= text.size()) return text.npos;
  const void* found = std::memchr(text.data() + from, c, text.size() - from);
  return found == nullptr ? text.npos
                          : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

unsigned FlagsOf(std::string_view line) {
  std::string_view digits = line.substr(kFlagsMark.size());
  digits.remove_prefix(std::min(digits.find_first_not_of(' '), digits.size()));
  const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (hexadecimal) digits.remove_prefix(2);
  unsigned long long flags = 0;
  (void)std::from_chars(digits.data(), digits.data() + digits.size(), flags, hexadecimal ? 16 : 10);
  return static_cast<unsigned>(flags & kAllColumns);
}

// Where the columns stand in the lines, and the lines behind the header.
struct Layout {
  std::array<int, kAddressColumns> place{};
  std::string_view entries;

  explicit Layout(std::string_view list) : entries(list) {
    unsigned flags = kAllColumns;
    ListLines lines(list);
    std::string_view line;
    if (lines.Next(line) && line.find(kHeaderMark) != line.npos) {
      entries = lines.Rest();
      if (lines.Next(line) && line.starts_with(kFlagsMark)) {
        flags = FlagsOf(line);
        entries = lines.Rest();
      }
    }
    int next = 0;
    for (int column = 0; column < kAddressColumns; ++column)
      place[static_cast<std::size_t>(column)] = (flags & ColumnBit(column)) != 0 ? next++ : kAbsent;
  }

  int Place(int column) const { return place[static_cast<std::size_t>(column)]; }
};

std::string JoinColumns(std::string_view line, const Layout& layout, unsigned columns) {
  std::vector<std::string> texts;
  LineFields fields(line);
  std::string_view field;
  while (texts.size() < kAddressColumns && fields.Next(field)) texts.emplace_back(field);
  std::string joined;
  for (int column = 0; column < kAddressColumns; ++column) {
    if ((columns & ColumnBit(column)) == 0) continue;
    if ((columns & (ColumnBit(column) - 1)) != 0) joined += ',';
    const int place = layout.Place(column);
    if (place != kAbsent && place < static_cast<int>(texts.size()))
      joined += texts[static_cast<std::size_t>(place)];
  }
  return joined;
}

// Finds a field in line after line. Neighbouring lines mostly begin alike, and then it is where it was
// before.
class FieldFinder {
 public:
  explicit FieldFinder(int place) : place_(place) {}

  /// The line from the field on; false when it has not as many fields.
  bool Find(std::string_view line, std::string_view& rest) {
    if (before_.empty() || !line.starts_with(before_)) {
      LineFields fields(line);
      if (!fields.Skip(place_)) return false;
      before_ = line.substr(0, line.size() - fields.Rest().size());
    }
    rest = line.substr(before_.size());
    return true;
  }

 private:
  int place_;
  std::string_view before_;  // in the line before: everything up to the field
};

// By the first byte of most lines' fields it shows that they do not begin with the key.
bool MayBeginWith(std::string_view rest, char first) {
  const std::size_t at = rest.starts_with('"') ? 1 : 0;
  return at >= rest.size() || !AreSurelyDifferent(rest[at], first);
}

// The lines that match best so far.
class BestLines {
 public:
  void Offer(std::string_view line, const AddressKey::Match& match) {
    if (match.length < length_) return;
    if (match.length > length_ || (match.exact && !exact_)) {
      length_ = match.length;
      exact_ = match.exact;
      lines_.clear();
    }
    if (match.exact == exact_) lines_.push_back(line);
  }
  const std::vector<std::string_view>& Lines() const { return lines_; }

  explicit BestLines(std::size_t leastLength) : length_(leastLength) {}

 private:
  std::size_t length_;
  bool exact_ = false;
  std::vector<std::string_view> lines_;
};

}  // namespace

void LineFields::Advance(std::size_t comma) {
  atEnd_ = comma >= rest_.size();
  rest_.remove_prefix(std::min(comma + 1, rest_.size()));
}

bool LineFields::Next(std::string_view& field) {
  if (atEnd_) return false;
  if (rest_.starts_with('"')) {
    field = NextQuoted();
    return true;
  }
  const std::size_t comma = std::min(FindByte(rest_, ',', 0), rest_.size());
  field = rest_.substr(0, comma);
  Advance(comma);
  return true;
}

std::string_view LineFields::NextQuoted() {
  const std::size_t quote = std::min(FindByte(rest_, '"', 1), rest_.size());
  if (quote + 1 >= rest_.size() || rest_[quote + 1] == ',') {
    const std::string_view field = rest_.substr(1, quote - 1);
    Advance(quote + 1);
    return field;
  }
  // Quotes in the field, or text behind the closing one.
  unquoted_.clear();
  std::size_t at = 1;
  for (bool inside = true; at < rest_.size() && (inside || rest_[at] != ','); ++at) {
    if (rest_[at] != '"') {
      unquoted_ += rest_[at];
    } else if (inside && at + 1 < rest_.size() && rest_[at + 1] == '"') {
      unquoted_ += rest_[at++];
    } else {
      inside = false;
    }
  }
  Advance(at);
  return unquoted_;
}

bool LineFields::Skip(int count) {
  std::string_view passed;
  for (; count > 0; --count) {
    if (!Next(passed)) return false;
  }
  return !atEnd_;
}

bool IsSearchable(const AddressQuery& query) {
  return !query.key.empty() && query.keyColumn >= 0 && query.keyColumn < kAddressColumns &&
         query.columns != 0 && query.columns <= kAllColumns;
}

std::vector<std::string> FindEntries(std::string_view list, const AddressQuery& query) {
  std::vector<std::string> found;
  if (!IsSearchable(query)) return found;
  const Layout layout(list);
  const int place = layout.Place(query.keyColumn);
  if (place == kAbsent) return found;
  const AddressKey key{std::string(query.key)};
  BestLines best(query.use == KeyUse::kWhole ? key.Size() : 1);
  FieldFinder finder(place);
  ListLines lines(layout.entries);
  std::string_view line, rest, field;
  while (lines.Next(line)) {
    if (!finder.Find(line, rest) || !MayBeginWith(rest, query.key.front())) continue;
    LineFields fields(rest);
    if (fields.Next(field)) best.Offer(line, key.In(field));
  }
  found.reserve(best.Lines().size());
  for (const std::string_view each : best.Lines()) found.push_back(JoinColumns(each, layout, query.columns));
  return found;
}

SearchOutcome SearchAddressFile(os::Files& files, std::string_view fileName, const AddressQuery& query,
                                std::vector<std::string>& found) {
  found.clear();
  if (fileName.empty() || !IsSearchable(query)) return SearchOutcome::kRejected;
  std::string list;
  if (files.Read(fileName, kLargestAddressList, list) != os::FileOutcome::kOk) return SearchOutcome::kNoList;
  found = FindEntries(list, query);
  return SearchOutcome::kSearched;
}

std::string AddressFileName(std::string_view programFolder) {
  return os::JoinPath(programFolder, "Address.csv");
}

}  // namespace kova::postal
