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

std::size_t FindByte(std::string_view text, char c, std::size_t from = 0) {
  const void* found = from < text.size() ? std::memchr(text.data() + from, c, text.size() - from) : nullptr;
  return found == nullptr ? text.npos
                          : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

// The closing quote of a field that begins with one; npos without.
std::size_t ClosingQuote(std::string_view text) {
  std::size_t at = FindByte(text, '"', 1);
  while (at != text.npos && at + 1 < text.size() && text[at + 1] == '"') at = FindByte(text, '"', at + 2);
  return at;
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

bool ListLines::Next(std::string_view& line) {
  if (rest_.empty()) return false;
  const std::size_t end = FindByte(rest_, '\n');
  line = rest_.substr(0, end);
  rest_.remove_prefix(end == rest_.npos ? rest_.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return true;
}

bool LineFields::NextRaw(std::string_view& field) {
  if (atEnd_) return false;
  std::size_t from = 0;
  if (rest_.starts_with('"')) from = std::min(ClosingQuote(rest_), rest_.size());
  const std::size_t comma = FindByte(rest_, ',', from);
  field = rest_.substr(0, comma);
  atEnd_ = comma == rest_.npos;
  if (!atEnd_) rest_.remove_prefix(comma + 1);
  return true;
}

bool LineFields::Next(std::string_view& field) {
  if (!NextRaw(field)) return false;
  if (!field.starts_with('"')) return true;
  field.remove_prefix(1);
  const std::size_t quote = FindByte(field, '"');
  if (quote == field.npos) return true;
  if (quote + 1 == field.size()) {
    field.remove_suffix(1);
    return true;
  }
  unquoted_.clear();
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '"') unquoted_ += field[i];
    if (field[i] == '"' && i + 1 < field.size() && field[i + 1] == '"') unquoted_ += field[++i];
  }
  field = unquoted_;
  return true;
}

bool LineFields::Skip(int count) {
  std::string_view passed;
  for (; count > 0; --count) {
    if (!NextRaw(passed)) return false;
  }
  return true;
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
  ListLines lines(layout.entries);
  std::string_view line, field;
  while (lines.Next(line)) {
    LineFields fields(line);
    if (fields.Skip(place) && fields.Next(field)) best.Offer(line, key.In(field));
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
