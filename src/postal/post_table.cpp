#include "postal/post_table.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

namespace kova::postal {
namespace {

constexpr std::size_t kCodeLength = 7;
constexpr std::size_t kShortestLine = 4;
constexpr std::size_t kBytesALine = 50;  // as a rule
constexpr std::size_t kLinesAReport = 1024;
constexpr std::size_t kLargestFile = 0xFFFFFFFF;  // a line's place has 32 bits
constexpr std::string_view kBetweenLabels = "、";

bool IsCodeEnd(char c) { return c == ',' || c == '\r' || c == '\n'; }

std::uint32_t HashOf(std::string_view code) {
  std::uint64_t bytes = 0;
  if (code.size() >= 4 && code.size() <= 8) {  // nearly all: their first four bytes and their last four
    std::uint32_t half = 0;
    std::memcpy(&half, code.data(), sizeof half);
    bytes = half;
    std::memcpy(&half, code.data() + code.size() - sizeof half, sizeof half);
    bytes = bytes << 32 | half;
  } else {
    for (const char c : code) bytes = bytes * 31 + static_cast<unsigned char>(c);
  }
  return static_cast<std::uint32_t>(bytes * 0x9E3779B97F4A7C15U >> 32);
}

/// The number at the beginning of a text, as atof reads it in every system: 0 where there is none.
double NumberIn(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc::result_out_of_range ? HUGE_VAL : number;
}

bool IsOnEarth(const tagPOST_LIST& entry) {
  return std::fabs(entry.latitude) <= 90 && std::fabs(entry.longitude) <= 180;  // false for no number, too
}

/// Takes the text up to the next comma off `line`; false when there is none.
bool TakeColumn(std::string_view& line, std::string_view& column) {
  const std::size_t comma = line.find(',');
  if (comma == std::string_view::npos) return false;
  column = line.substr(0, comma);
  line.remove_prefix(comma + 1);
  return true;
}

bool ReadLine(std::string_view line, tagPOST_LIST& entry) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  std::string_view latitude;
  if (line.size() < kShortestLine || !TakeColumn(line, entry.code) || !TakeColumn(line, entry.text) ||
      !TakeColumn(line, latitude) || entry.code.empty())
    return false;
  entry.latitude = NumberIn(latitude);
  entry.longitude = NumberIn(line);
  return IsOnEarth(entry);
}

/// True when `label` is one of the labels joined in `labels`.
bool HasLabel(std::string_view labels, std::string_view label) {
  for (std::size_t from = 0; from <= labels.size();) {
    const std::size_t to = std::min(labels.find(kBetweenLabels, from), labels.size());
    if (labels.substr(from, to - from) == label) return true;
    from = to + kBetweenLabels.size();
  }
  return false;
}

}  // namespace

bool PostTable::Load(std::string csv, foundation::Progress& progress) {
  csv_ = std::move(csv);
  if (csv_.size() > kLargestFile) csv_.resize(kLargestFile);
  rows_.reserve(csv_.size() / kBytesALine);
  MakeSlots(csv_.size() / kBytesALine);
  std::size_t line = 0;
  for (std::size_t number = 0; line < csv_.size(); ++number) {
    if (number % kLinesAReport == 0 &&
        !progress.Report(static_cast<double>(line) / static_cast<double>(csv_.size()))) {
      Clear();
      return false;
    }
    const std::size_t end = std::min(csv_.find('\n', line), csv_.size());
    if (end - line >= kShortestLine && csv_[line] != ',') Put(line);
    line = end + 1;
  }
  return true;
}

void PostTable::Clear() {
  rows_.clear();
  slots_.clear();
  csv_.clear();
}

std::string_view PostTable::CodeAt(std::size_t line) const {
  std::size_t end = line;
  while (end < csv_.size() && !IsCodeEnd(csv_[end])) ++end;
  return std::string_view(csv_).substr(line, end - line);
}

bool PostTable::IsCodeAt(std::size_t line, std::string_view code) const {
  const std::size_t end = line + code.size();
  return csv_.compare(line, code.size(), code) == 0 && (end >= csv_.size() || IsCodeEnd(csv_[end]));
}

std::size_t PostTable::SlotOf(std::string_view code, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  while (slots_[at].row != 0 && (slots_[at].hash != hash || !IsCodeAt(rows_[slots_[at].row - 1].line, code)))
    at = (at + 1) & mask;
  return at;
}

void PostTable::MakeSlots(std::size_t rows) {
  const std::vector<Slot> before = std::exchange(slots_, {});
  slots_.resize(std::bit_ceil(std::max<std::size_t>(rows, 512) * 2));
  for (const Slot& slot : before) {
    if (slot.row != 0) slots_[SlotOf(CodeAt(rows_[slot.row - 1].line), slot.hash)] = slot;
  }
}

void PostTable::Put(std::size_t line) {
  if (rows_.size() * 2 >= slots_.size()) MakeSlots(rows_.size() * 2);
  const std::string_view code = CodeAt(line);
  const std::uint32_t hash = HashOf(code);
  Slot& slot = slots_[SlotOf(code, hash)];
  if (slot.row == 0) {
    rows_.emplace_back();
    slot = {static_cast<std::uint32_t>(rows_.size()), hash};
  }
  rows_[slot.row - 1].line = static_cast<std::uint32_t>(line);
}

std::optional<tagPOST_LIST> PostTable::EntryAt(std::size_t row) const {
  const std::string_view rest = std::string_view(csv_).substr(rows_[row].line);
  tagPOST_LIST entry;
  if (!ReadLine(rest.substr(0, rest.find('\n')), entry)) return std::nullopt;
  entry.count = rows_[row].count;
  return entry;
}

void PostTable::Count(std::string_view code) {
  char digits[kCodeLength];
  std::string_view whole(digits, kCodeLength);
  if (code.size() == kCodeLength && code.find('-') == code.npos) {  // most are typed so
    whole = code;
  } else {
    std::size_t length = 0;
    for (std::size_t i = 0; i < code.size() && length < kCodeLength; ++i)
      if (code[i] != '-') digits[length++] = code[i];
    while (length < kCodeLength) digits[length++] = '0';
  }
  if (slots_.empty()) return;
  const Slot& slot = slots_[SlotOf(whole, HashOf(whole))];
  if (slot.row != 0) ++rows_[slot.row - 1].count;
}

void PostTable::ResetCounts() {
  for (Row& row : rows_) row.count = 0;
}

void PlaceTable::Add(const tagPOST_LIST& entry) {
  char code[64];
  std::snprintf(code, sizeof code, "%f,%f", entry.latitude, entry.longitude);
  const auto found = byCode_.find(code);
  if (found == byCode_.end()) {
    tagPOST_LIST& place = entries_.emplace_back(entry);
    place.code = texts_.emplace_back(code);
    place.text = texts_.emplace_back(entry.text);
    byCode_.emplace(place.code, &place);
    return;
  }
  tagPOST_LIST& place = *found->second;
  place.count += entry.count;
  if (!HasLabel(place.text, entry.text))
    place.text = texts_.emplace_back(std::string(place.text).append(kBetweenLabels).append(entry.text));
}

}  // namespace kova::postal
