#include "hosts/sample_practice/plan.h"

#include <algorithm>
#include <numeric>

#include "hosts/console/console.h"

namespace kova::sample {
namespace {

constexpr int kPastDays = 730;
constexpr int kFutureDays = 60;
constexpr int kLeastToday = 30;
constexpr int kMostUnits = 99;  // a unit's code has two digits

/// How many appointments each open day has; they add up to `total`.
std::vector<int> CountsByDay(const std::vector<Day>& days, const Options& options, Random& random) {
  std::vector<std::int64_t> weights;
  for (const Day day : days) {
    // A coming day is the emptier the farther away it is.
    const int fill = day > options.today ? std::max(5, 70 - (day - options.today)) : 100;
    weights.push_back(static_cast<std::int64_t>(fill) * random.Between(75, 125));
  }
  const std::int64_t all = std::accumulate(weights.begin(), weights.end(), std::int64_t{0});
  std::vector<int> counts;
  std::int64_t upTo = 0;
  std::int64_t given = 0;
  for (const std::int64_t weight : weights) {
    upTo += weight;
    const std::int64_t share = options.reservations * upTo / all;
    counts.push_back(static_cast<int>(share - given));
    given = share;
  }
  return counts;
}

/// Takes from the fullest other days what today lacks.
void FillToday(std::vector<int>& counts, std::size_t today, int least) {
  while (counts[today] < least) {
    counts[today] = -counts[today];  // out of the way of the search
    const auto fullest = std::max_element(counts.begin(), counts.end());
    counts[today] = -counts[today];
    if (*fullest <= 0) return;
    --*fullest;
    ++counts[today];
  }
}

struct Room {
  int units;
  int slotMinutes;
};

Room RoomFor(const std::vector<Day>& days, const std::vector<int>& counts) {
  for (const int slot : {30, 15}) {
    int units = 4;
    for (std::size_t i = 0; i < days.size(); ++i) {
      const int slots = static_cast<int>(SlotsOf(days[i], slot).size());
      units = std::max(units, (counts[i] + slots - 1) / slots);
    }
    if (units <= kMostUnits) return {units, slot};
  }
  throw hosts::UsageError("no practice sees so many patients in two years");
}

/// Patients are numbered in the order in which they joined: three in five before the two years began.
std::vector<Day> JoinDays(int patients, Day first, Day today, Random& random) {
  std::vector<Day> joined;
  for (int i = 0; i < patients; ++i) {
    const bool before = random.Chance(60);
    joined.push_back(before ? first - random.Between(1, 3650) : first + random.Between(0, today - first));
  }
  std::sort(joined.begin(), joined.end());
  return joined;
}

/// A patient that the practice knows on `day`; often one of those who joined last.
int PickPatient(const std::vector<Day>& joined, Day day, Random& random) {
  const auto known = static_cast<int>(std::upper_bound(joined.begin(), joined.end(), day) - joined.begin());
  if (known == 0) return 0;
  const int recent = std::max(1, known / 5);
  const int from = random.Chance(50) ? known - recent : 0;
  return random.Between(from, known - 1);
}

Outcome PastOutcome(Random& random) {
  const int dice = random.Between(1, 100);
  if (dice <= 88) return Outcome::kVisited;
  return dice <= 93 ? Outcome::kAbsent : Outcome::kCancelled;
}

/// Today the first two thirds have come; the earliest of them have paid.
Outcome TodaysOutcome(int index, int count) {
  if (index < count / 10) return Outcome::kVisited;
  return index < count * 2 / 3 ? Outcome::kWaiting : Outcome::kBooked;
}

/// The appointments of one day, in free cells of its times and units; nobody comes twice.
void PlanDay(Day day, int count, const Room& room, const Options& options, Random& random, Plan& plan) {
  const std::vector<int> slots = SlotsOf(day, room.slotMinutes);
  std::vector<int> cells(slots.size() * static_cast<std::size_t>(room.units));
  std::iota(cells.begin(), cells.end(), 0);
  for (int i = 0; i < count; ++i) {
    const auto left = static_cast<int>(cells.size()) - 1;
    std::swap(cells[static_cast<std::size_t>(i)], cells[static_cast<std::size_t>(random.Between(i, left))]);
  }
  std::sort(cells.begin(), cells.begin() + count);
  std::vector<int> here;
  for (int i = 0; i < count; ++i) {
    int patient = PickPatient(plan.joined, day, random);
    for (int tries = 0; tries < 20 && std::find(here.begin(), here.end(), patient) != here.end(); ++tries)
      patient = PickPatient(plan.joined, day, random);
    here.push_back(patient);
    const int cell = cells[static_cast<std::size_t>(i)];
    const Outcome outcome = day > options.today ? (random.Chance(4) ? Outcome::kCancelled : Outcome::kBooked)
                            : day < options.today ? PastOutcome(random)
                                                  : TodaysOutcome(i, count);
    plan.appointments.push_back(
        {day, static_cast<std::int16_t>(slots[static_cast<std::size_t>(cell / room.units)]),
         static_cast<std::int16_t>(cell % room.units + 1), patient, outcome});
  }
}

}  // namespace

Plan MakePlan(const Options& options, Random& random) {
  const Day first = options.today - kPastDays;
  const std::vector<Day> days = OpenDays(first, options.today + kFutureDays, options.today);
  std::vector<int> counts = CountsByDay(days, options, random);
  const auto today =
      static_cast<std::size_t>(std::find(days.begin(), days.end(), options.today) - days.begin());
  FillToday(counts, today, std::min(kLeastToday, options.reservations));
  const Room room = RoomFor(days, counts);
  Plan plan{room.units, room.slotMinutes, {}, JoinDays(options.patients, first, options.today, random)};
  plan.appointments.reserve(static_cast<std::size_t>(options.reservations));
  for (std::size_t i = 0; i < days.size(); ++i) PlanDay(days[i], counts[i], room, options, random, plan);
  return plan;
}

}  // namespace kova::sample
