#pragma once

#include <string_view>
#include <vector>

#include "platform/recordstore/kovadbcall.h"

namespace kova::records {

// Stage codes (tagRESERVATION::stageCode) that are no stage of the practice's own; stored, do not change.
inline constexpr std::string_view kBeforeVisit = "00";  // as is an empty one
inline constexpr std::string_view kAccounted = "01";

/// True for a reservation that stands: neither cancelled nor moved to another day.
inline bool TakesPlace(const tagRESERVATION& reservation) { return reservation.status < 2; }

/// The reservations of a day (YYYYMMDD) that take place, in order of time. 0, also for none, else the record store's
/// result; there are none in `reservations` then.
[[nodiscard]] int ReadReservationsOfDay(CKovaDBSys* db, std::string_view date, std::vector<tagRESERVATION>& reservations);

}  // namespace kova::records
