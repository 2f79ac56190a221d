#pragma once

// What happens on which day, decided before anything is written: patients need to know their visits.

#include <cstdint>
#include <vector>

#include "hosts/sample_practice/calendar.h"
#include "hosts/sample_practice/random.h"

namespace kova::sample {

struct Options {
  std::uint64_t seed = 1;
  int patients = 2000;
  int reservations = 14000;
  Day today = 0;
};

enum class Outcome : std::uint8_t {
  kVisited,    ///< came and paid
  kWaiting,    ///< of today: has come, not paid yet
  kAbsent,     ///< did not come
  kCancelled,  ///< or moved to another day
  kBooked,     ///< still to come
};

struct Appointment {
  Day day;
  std::int16_t start;    ///< minutes since midnight
  std::int16_t unit;     ///< 1 and up
  std::int32_t patient;  ///< 0 and up
  Outcome outcome;
};

struct Plan {
  int units = 0;
  int slotMinutes = 0;
  /// In order of day, time and unit.
  std::vector<Appointment> appointments;
  /// For each patient, the day from which the practice knows him.
  std::vector<Day> joined;
};

/// Two years of appointments up to `today` and two months of coming ones. The number of appointments is as
/// asked; today has at least thirty of them (all of them, when fewer are asked for). The practice gets as
/// many units as that needs. Throws UsageError when no practice could see so many.
Plan MakePlan(const Options& options, Random& random);

}  // namespace kova::sample
