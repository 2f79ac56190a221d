#include "mail/placeholders.h"

#include <algorithm>
#include <optional>

namespace kova::mail {
namespace {

// By the enumeration's order. The words stand in the practices' templates; do not change.
constexpr std::array<PlaceholderText, kPlaceholderCount> kTexts{{
    {"$_PNAME", "患者氏名"},
    {"$_PID", "患者ID"},
    {"$_PCASE", "症例番号"},
    {"$_REDATE", "予約日"},
    {"$_RETIME", "予約時間"},
    {"$_DATETIME", "送信日時"},
    {"$_PARENTNAME", "保護者氏名"},
    {"$_BREDATE", "変更前の予約日"},
    {"$_BRETIME", "変更前の予約時間"},
    {"$_NOAPPLI", "（空欄になります）"},
}};

constexpr std::string_view kIntroduction = "$_";

// Bytes can be searched: "$" is no second byte of a character, and so neither is what stands behind it.

/// The placeholder that `text` begins with; kPlaceholderCount for none. No literal begins with another.
std::size_t PlaceholderAt(std::string_view text) {
  std::size_t i = 0;
  while (i < kPlaceholderCount && !text.starts_with(kTexts[i].literal)) ++i;
  return i;
}

/// All replaced in one walk; nothing when the order of replacement could tell: a value holds a "$", or a "$"
/// that begins no placeholder could come to begin one, by what is put in or closes up behind it.
std::optional<std::string> FillAtOnce(std::string_view text, const PlaceholderValues& values) {
  for (const std::string& value : values) {
    if (value.find('$') != std::string::npos) return std::nullopt;
  }
  std::string filled;
  filled.reserve(text.size());
  for (std::size_t at = text.find('$'); at != std::string_view::npos; at = text.find('$', at)) {
    const std::size_t i = PlaceholderAt(text.substr(at));
    if (i < kPlaceholderCount) {
      filled.append(text.substr(0, at)).append(values[i]);
      text.remove_prefix(at + kTexts[i].literal.size());
      at = 0;
    } else if (++at < text.size() && (text[at] == '_' || text[at] == '$')) {
      return std::nullopt;
    }
  }
  return filled.append(text);
}

bool Replace(const std::string& text, std::string_view literal, std::string_view value,
             std::string& replaced) {
  std::size_t found = text.find(literal);
  if (found == std::string::npos) return false;
  replaced.clear();
  std::size_t from = 0;
  for (; found != std::string::npos; found = text.find(literal, from)) {
    replaced.append(text, from, found - from).append(value);
    from = found + literal.size();
  }
  replaced.append(text, from);
  return true;
}

constexpr bool IsWordByte(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

}  // namespace

const PlaceholderText& TextOf(Placeholder placeholder) {
  return kTexts[static_cast<std::size_t>(placeholder)];
}

const std::array<Placeholder, kPlaceholderCount>& ButtonOrder() {
  static constexpr std::array<Placeholder, kPlaceholderCount> kOrder{
      Placeholder::kPatientName,  Placeholder::kReservationDate, Placeholder::kReservationTime,
      Placeholder::kSentAt,       Placeholder::kGuardianName,    Placeholder::kEarlierDate,
      Placeholder::kEarlierTime,  Placeholder::kPatientId,       Placeholder::kCaseNumber,
      Placeholder::kNoApplication};
  return kOrder;
}

std::string FillPlaceholders(std::string text, const PlaceholderValues& values) {
  if (text.find('$') == std::string::npos) return text;
  if (auto filled = FillAtOnce(text, values)) return *std::move(filled);
  std::string replaced;
  for (std::size_t i = 0; i < kPlaceholderCount; ++i) {
    if (Replace(text, kTexts[i].literal, values[i], replaced)) text.swap(replaced);
  }
  return text;
}

std::vector<std::string> UnknownPlaceholders(std::string_view text) {
  std::vector<std::string> unknown;
  for (std::size_t at = text.find(kIntroduction); at != std::string_view::npos;
       at = text.find(kIntroduction, at)) {
    const std::size_t begin = at;
    at += kIntroduction.size();
    while (at < text.size() && IsWordByte(text[at])) ++at;
    const std::string_view word = text.substr(begin, at - begin);
    if (word == kIntroduction || PlaceholderAt(word) < kPlaceholderCount) continue;
    if (std::find(unknown.begin(), unknown.end(), word) == unknown.end()) unknown.emplace_back(word);
  }
  return unknown;
}

}  // namespace kova::mail
