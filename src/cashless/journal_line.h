#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cashless/payment_journal.h"

namespace kova::cashless {

/// A payment as a line of the journal, without its end.
std::string JournalLine(const JournalEntry& entry);

/// The payment of a line; nothing for a line that is damaged or none of the journal's.
std::optional<JournalEntry> ParseJournalLine(std::string_view line);

}  // namespace kova::cashless
