#include "mail/template_roles.h"

namespace kova::mail {
namespace {

constexpr std::string_view kNeverChosen = "xxxx";

struct RoleSetting {
  TemplateRole role;
  std::string_view key;
  std::string_view defaultNumber;
};

// Stored in the practices' settings files; do not change.
constexpr RoleSetting kSettings[] = {
    {TemplateRole::kReservation, "ReservationTemplate", "0001"},
    {TemplateRole::kNotCome, "NotComeTemplate", "0001"},
    {TemplateRole::kCome, "ComeTemplate", "0006"},
    {TemplateRole::kTreatmentFinished, "TrearmentCompTemplate", "0007"},
    {TemplateRole::kChangeConfirm, "ChangeConfirmTemplate", "0008"},
    {TemplateRole::kReservationConfirm, "ReservationConfirmTemplate", kNeverChosen},
};

RoleSetting SettingOf(TemplateRole role) {
  for (const RoleSetting& each : kSettings) {
    if (each.role == role) return each;
  }
  return {role, {}, {}};
}

}  // namespace

bool IsTemplateRole(int mode) {
  const auto role = static_cast<TemplateRole>(mode);
  return role == TemplateRole::kPick || !SettingsKeyOf(role).empty();
}

std::string_view SettingsKeyOf(TemplateRole role) { return SettingOf(role).key; }

std::string ChosenTemplate(const foundation::SettingsSnapshot& settings, TemplateRole role) {
  const RoleSetting setting = SettingOf(role);
  if (setting.key.empty()) return {};
  std::string chosen = settings.GetString(kMailSection, setting.key, setting.defaultNumber);
  if (role != TemplateRole::kReservationConfirm || chosen != kNeverChosen) return chosen;
  return ChosenTemplate(settings, TemplateRole::kReservation);
}

}  // namespace kova::mail
