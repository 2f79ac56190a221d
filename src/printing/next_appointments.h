#pragma once

#include <ctime>
#include <string_view>

#include "printing/master_names.h"
#include "printing/next_card.h"

namespace kova::printing {

/// True when `reservation` is an appointment still to come at `now`: later than it, neither cancelled nor
/// moved, and the patient has not come yet.
bool IsToCome(const tagRESERVATION& reservation, const std::tm& now);

/// The card of a reservation, without names.
_NEXTCARD CardOf(const tagRESERVATION& reservation);

/// The patient's first four appointments to come, in order of date and time, in `card`, which is emptied
/// first. Gives their count; -1, and `card` is empty, when they cannot be read.
int LoadNextAppointments(CKovaDBSys* db, std::string_view patientCode, const std::tm& now, MasterNames& names,
                         _NEXTCARDDATA& card);

}  // namespace kova::printing
