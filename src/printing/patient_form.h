#pragma once

#include <array>
#include <ctime>
#include <string>

#include "foundation/settings.h"
#include "printing/master_names.h"
#include "printing/next_card.h"
#include "printing/print_data.h"

namespace kova::printing {

/// Everything that a patient's form shows.
struct PatientForm {
  tagPATIENTDB patient{};
  std::tm now{};
  std::string clinicName, clinicAddress, clinicTel;
  std::array<std::string, 10> extraItems;  // their names
  std::string doctor;                      // in charge
  std::string insuranceType;
  _NEXTCARDDATA next{};
};

/// Reads what belongs to the patient; what is not there is empty. False when some of it cannot be read.
[[nodiscard]] bool ReadPatientForm(CKovaDBSys* db, const tagPATIENTDB& patient,
                                   const foundation::SettingsSnapshot& settings, const std::tm& now, PatientForm& form);

/// What the file says; docs/receipts.md has the field behind each key.
PrintData MakePatientData(const PatientForm& form);

}  // namespace kova::printing
