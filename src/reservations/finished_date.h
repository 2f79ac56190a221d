#pragma once

#include <string_view>

#include "platform/recordstore/kovadbcall.h"

namespace kova::reservations {

/// Sets the patient's finished date to what the patient's visits give: the latest day of a visited
/// reservation whose accounting was finished, or empty without one. Part of the caller's transaction. Gives
/// the record store's result; 0 also when it was right already.
int ResetFinishedDate(CKovaDBSys* db, std::string_view patientCode);

/// Sets the patient's finished date to a day, eight digits (result BadArgument for anything else), as part of
/// the caller's transaction. Gives the record store's result.
int PutFinishedDate(CKovaDBSys* db, std::string_view patientCode, std::string_view date);

}  // namespace kova::reservations
