#pragma once

// For this room's own use: entries out of records that were read.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pickers/choice_list.h"
#include "pickers/master_reading.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::pickers {

/// `text` and blanks behind it up to `width` bytes; a longer text stays whole.
inline std::string LeftAligned(std::string_view text, std::size_t width) {
  std::string aligned(text);
  if (aligned.size() < width) aligned.resize(width, ' ');
  return aligned;
}

/// `text` behind blanks up to `width` bytes.
inline std::string RightAligned(std::string_view text, std::size_t width) {
  std::string aligned(text.size() < width ? width - text.size() : 0, ' ');
  return aligned += text;
}

/// Code fields as they stand in a data block: each with a terminator, and zeros up to its width.
template <std::size_t... kWidths>
std::string CodeBlock(const char (&... fields)[kWidths]) {
  std::string block((kWidths + ...), '\0');
  char* place = block.data();
  ((store::GetText(fields).copy(place, kWidths - 1), place += kWidths), ...);
  return block;
}

template <typename Record>
bool IsRetired(const Record& record) {
  return record.marker[0] == '_' && record.marker[1] == '_';
}

/// The name; data: code.
template <typename Record>
inline constexpr Appearance<Record> kNameAndCode{
    [](const Record& record) { return std::string(store::GetText(record.name)); },
    [](const Record& record) { return CodeBlock(record.code); }};

/// Adds those of the records that `isListed` and selects the one that `isCurrent`.
template <typename Records, typename IsListed, typename IsCurrent>
void AddEntries(ChoiceList& list, const Records& records, IsListed isListed, IsCurrent isCurrent) {
  for (const auto& each : records) {
    if (!isListed(each.record)) continue;
    if (isCurrent(each.record)) list.selected = static_cast<int>(list.entries.size());
    list.entries.emplace_back(each.text, each.data);
  }
}

/// The same with all that was read, whose result is taken over.
template <typename Record, typename IsListed, typename IsCurrent>
void AddChoices(ChoiceList& list, const Master<Record>& read, IsListed isListed, IsCurrent isCurrent) {
  list.entries.reserve(list.entries.size() + read->records.size());
  AddEntries(list, read->records, isListed, isCurrent);
  list.result = read->result;
  list.sources.push_back(read);
}

/// True for a record whose code is `code`.
inline auto HasCode(std::string_view code) {
  return [code](const auto& record) { return store::GetText(record.code) == code; };
}

/// Retired records are listed only while `isKept`.
template <typename IsKept>
auto UnlessRetired(IsKept isKept) {
  return [isKept](const auto& record) { return !IsRetired(record) || isKept(record); };
}

inline constexpr auto kNever = [](const auto&) { return false; };

}  // namespace kova::pickers
