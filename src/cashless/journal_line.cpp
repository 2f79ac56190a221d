#include "cashless/journal_line.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "cashless/line_check.h"
#include "foundation/number_text.h"

namespace kova::cashless {
namespace {

// Stored; do not change.
constexpr std::array<std::string_view, 4> kOutcomes = {"open", "paid", "not-paid", "unknown"};
constexpr std::size_t kFields = 9;

bool TakeOutcome(std::string_view text, PaymentOutcome& outcome) {
  const auto found = std::find(kOutcomes.begin(), kOutcomes.end(), text);
  if (found == kOutcomes.end()) return false;
  outcome = static_cast<PaymentOutcome>(found - kOutcomes.begin());
  return true;
}

}  // namespace

std::string JournalLine(const JournalEntry& entry) {
  std::string line;
  for (const std::string& field :
       {OneLine(entry.startedAt), OneLine(entry.name), std::to_string(entry.amount),
        std::to_string(entry.kind), OneLine(entry.text),
        std::string(kOutcomes[static_cast<std::size_t>(entry.outcome)]), std::to_string(entry.code),
        OneLine(entry.reason)})
    line += field + '\t';
  return line + LineCheck(line);
}

std::optional<JournalEntry> ParseJournalLine(std::string_view line) {
  // A tab is no part of a double-byte character.
  const std::size_t checked = line.rfind('\t') + 1;
  if (checked == 0 || LineCheck(line.substr(0, checked)) != line.substr(checked)) return std::nullopt;
  std::array<std::string_view, kFields> fields;
  for (std::size_t i = 0; i < kFields; ++i) {
    const std::size_t end = std::min(line.find('\t'), line.size());
    fields[i] = line.substr(0, end);
    if ((end == line.size()) != (i + 1 == kFields)) return std::nullopt;
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  JournalEntry entry;
  entry.startedAt = fields[0];
  entry.name = fields[1];
  entry.amount = foundation::ReadInteger(fields[2]);
  entry.kind = foundation::ReadInteger(fields[3]);
  entry.text = fields[4];
  entry.code = foundation::ReadInteger(fields[6]);
  entry.reason = fields[7];
  if (entry.name.empty() || !TakeOutcome(fields[5], entry.outcome)) return std::nullopt;
  return entry;
}

}  // namespace kova::cashless
