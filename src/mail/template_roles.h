#pragma once

// What templates are used for, and where the practice's choice for each use is kept: settings section
// "EMail".

#include <string>
#include <string_view>

#include "foundation/settings.h"

namespace kova::mail {

/// The editor's modes; their numbers are the callers'. Do not change.
enum class TemplateRole {
  kPick = -1,  // no use of its own: the chosen number goes to the caller
  kReservation = 0,
  kNotCome = 1,
  kCome = 2,
  kTreatmentFinished = 3,
  kChangeConfirm = 4,
  kReservationConfirm = 5,
};

inline constexpr std::string_view kMailSection = "EMail";

/// True for the numbers above.
bool IsTemplateRole(int mode);

/// The settings key of a role; empty for kPick. "TrearmentCompTemplate" is spelled so deliberately: existing
/// settings files carry it.
std::string_view SettingsKeyOf(TemplateRole role);

/// The stored choice of a role as it stands, with the role's default where none is stored. A
/// reservation-confirmation template never chosen ("xxxx") is the reservation template's. Empty for kPick.
std::string ChosenTemplate(const foundation::SettingsSnapshot& settings, TemplateRole role);

}  // namespace kova::mail
