#pragma once

#include "hosts/console/practice.h"
#include "hosts/sample_practice/plan.h"
#include "hosts/sample_practice/random.h"

namespace kova::sample {

/// Writes the plan's reservations; those that were visited and paid with their sale, its items and, of some,
/// a charge. Taxes are those of the practice's settings.
void WriteVisits(CKovaDBSys& db, const Plan& plan, Random& random);

}  // namespace kova::sample
