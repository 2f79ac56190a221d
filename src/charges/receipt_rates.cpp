#include "charges/receipt_rates.h"

#include <cstdint>
#include <cstring>

#include "charges/settings_periods.h"

namespace kova::charges {
namespace {

using foundation::SettingsSnapshot;

constexpr PeriodKeys kReceptPeriods = {"ReceptCount", "ReceptFrm", "ReceptTo"};
constexpr std::string_view kReceptRate = "ReceptRate";
constexpr int kFirstDay = 19000101;
constexpr int kOpenEnd = 99991231;

}  // namespace

double GetReceptRate(const SettingsSnapshot& settings, std::string_view date) {
  const int period = FirstPeriodContaining(settings, kReceptPeriods, date);
  return period == 0 ? 0.0 : RateOfPeriod(settings, kReceptRate, period);
}

int GetReceptPercent(const SettingsSnapshot& settings, int dateNumber) {
  const auto read = [&](std::string_view name, int number, int defaultValue) {
    return settings.GetInt(kPeriodSection, NumberedKey(name, number), defaultValue);
  };
  const int count = settings.GetInt(kPeriodSection, kReceptPeriods.count, 0);
  // Ends at the latest at the first period without an end key, however large the count.
  for (int number = 1; number <= count; ++number) {
    const int to = read(kReceptPeriods.to, number, kOpenEnd);
    const bool contains =
        to == kOpenEnd || (dateNumber <= to && read(kReceptPeriods.from, number, kFirstDay) <= dateNumber);
    if (contains) return read(kReceptRate, number, 1);
  }
  return 0;
}

int cmpRecept(const void* a, const void* b) {
  std::int32_t first;
  std::int32_t second;
  std::memcpy(&first, a, sizeof first);
  std::memcpy(&second, b, sizeof second);
  return first >= second ? 1 : -1;
}

}  // namespace kova::charges
