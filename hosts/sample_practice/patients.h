#pragma once

#include <string>
#include <vector>

#include "hosts/console/practice.h"
#include "hosts/sample_practice/plan.h"
#include "hosts/sample_practice/random.h"

namespace kova::sample {

/// The code of a patient by his place in the plan.
std::string PatientCodeOf(int patient);

/// Writes both halves of every patient of the plan.
void WritePatients(CKovaDBSys& db, const Plan& plan, Day today, Random& random);

}  // namespace kova::sample
