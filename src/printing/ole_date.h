#pragma once

// Dates of receipts: days since 1899-12-30 as OLE automation counts them.

#include <string>
#include <string_view>

#include "printing/receipt.h"

namespace kova::printing {

/// The parts of a date; -1 each when it is none.
struct DateParts {
  int year = -1;
  int month = -1;
  int day = -1;
};

/// To the nearest second, so that a moment before midnight may give the next day. Invalid outside the years
/// 100 to 9999.
DateParts PartsOf(const _TMPRECEIPTDATE& date);

/// "2026.11.23"; empty when it is no date.
std::string DottedDate(const _TMPRECEIPTDATE& date);

/// The midnight that begins the day `date` (YYYYMMDD); no date when that is none.
_TMPRECEIPTDATE DateOf(std::string_view date);
_TMPRECEIPTDATE DateOf(int year, int month, int day);

/// 1 for Sunday to 7 for Saturday; 0 when `date` (YYYYMMDD) is no date.
int WeekdayOf(std::string_view date);

}  // namespace kova::printing
