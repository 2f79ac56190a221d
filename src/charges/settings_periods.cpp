#include "charges/settings_periods.h"

namespace kova::charges {

std::string NumberedKey(std::string_view name, int number) {
  std::string key(name);
  if (number < 10) key += '0';
  return key += std::to_string(number);
}

int FirstPeriodContaining(const foundation::SettingsSnapshot& settings, const PeriodKeys& keys,
                          std::string_view date) {
  constexpr int kMostWithoutEnd = 10000;
  const int count = settings.GetInt(kPeriodSection, keys.count, 0);
  int withoutEnd = 0;
  for (int number = 1; number <= count && withoutEnd < kMostWithoutEnd; ++number) {
    const std::string to = settings.GetString(kPeriodSection, NumberedKey(keys.to, number), "");
    if (to.empty()) ++withoutEnd;
    if (to >= date && settings.GetString(kPeriodSection, NumberedKey(keys.from, number), "") <= date)
      return number;
  }
  return 0;
}

double RateOfPeriod(const foundation::SettingsSnapshot& settings, std::string_view rateKey, int number) {
  return settings.GetInt(kPeriodSection, NumberedKey(rateKey, number), 0) / 100.0;
}

}  // namespace kova::charges
