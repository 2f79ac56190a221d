#pragma once

// Ours against a baseline in the same run: the two in turn, many rounds, and the median of the rounds'
// ratios, so that a machine whose speed drifts moves both alike.

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace kova::bench {

inline double Seconds() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Runs both `rounds` times after a round that is not counted and prints one line. A round does `count`
/// things and the times printed are of one of them.
template <typename Ours, typename Baseline>
void Compare(const char* name, const char* aim, int rounds, int count, Ours ours, Baseline baseline) {
  std::vector<double> oursTimes, baselineTimes, ratios;
  for (int round = -1; round < rounds; ++round) {
    const double start = Seconds();
    ours(round + 1);
    const double between = Seconds();
    baseline(round + 1);
    const double end = Seconds();
    if (round < 0) continue;
    oursTimes.push_back((between - start) / count * 1e6);
    baselineTimes.push_back((end - between) / count * 1e6);
    ratios.push_back(oursTimes.back() / baselineTimes.back());
  }
  const double ratio = Median(ratios);
  std::printf("%-44s ours %10.2f us   baseline %10.2f us   ours/baseline %6.3f   aim %s\n", name,
              Median(oursTimes), Median(baselineTimes), ratio, aim);
  std::fflush(stdout);
}

}  // namespace kova::bench
