#pragma once

// The words in a template that stand for a reservation's data.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kova::mail {

/// In the order in which they are replaced.
enum class Placeholder {
  kPatientName,
  kPatientId,
  kCaseNumber,
  kReservationDate,
  kReservationTime,
  kSentAt,
  kGuardianName,
  kEarlierDate,
  kEarlierTime,
  kNoApplication,
};
inline constexpr std::size_t kPlaceholderCount = 10;

struct PlaceholderText {
  std::string_view literal;  // "$_PNAME"
  std::string_view meaning;  // "患者氏名"
};
const PlaceholderText& TextOf(Placeholder placeholder);

/// In the order of the editor's buttons, which is not the order of replacement.
const std::array<Placeholder, kPlaceholderCount>& ButtonOrder();

/// One value for each placeholder, in the enumeration's order.
using PlaceholderValues = std::array<std::string, kPlaceholderCount>;

/// `text` with every placeholder replaced, one after the other in the order of the enumeration: a value that
/// itself holds a placeholder is expanded by the later ones only (deliberately).
std::string FillPlaceholders(std::string text, const PlaceholderValues& values);

/// The words in `text` that look like a placeholder and would stay as they are, each once, in order: "$_" and
/// at least one ASCII letter, digit or "_". "$_PNAM" is one; "$_PNAMES" is none, as it becomes the name and
/// an S.
std::vector<std::string> UnknownPlaceholders(std::string_view text);

}  // namespace kova::mail
