#include "mail/last_login.h"

#include <cstdint>
#include <cstdio>

#include "foundation/civil_day.h"
#include "foundation/number_text.h"

namespace kova::mail {
namespace {

constexpr std::string_view kZeros = "00000000000000";
constexpr std::int64_t kDay = 86400;  // seconds

struct Age {
  std::int64_t below;  // days
  std::string_view label;
};
constexpr Age kAges[] = {
    {8, "(最近)"},          {32, "(1週間以上前)"},  {93, "(1ヶ月以上前)"},
    {185, "(3ヶ月以上前)"}, {366, "(6ヶ月以上前)"},
};

std::string_view LabelOf(std::int64_t days) {
  for (const Age& age : kAges) {
    if (days < age.below) return age.label;
  }
  return "(かなり前)";
}

std::int64_t SecondsOf(const std::tm& time) {
  const std::int64_t days = foundation::DayNumber({time.tm_year + 1900, time.tm_mon + 1, time.tm_mday});
  return days * kDay + time.tm_hour * 3600 + time.tm_min * 60 + time.tm_sec;
}

}  // namespace

std::optional<std::string> LastLoginText(std::string_view stamp, const std::tm& now) {
  if (stamp.empty()) return std::string();
  const std::string whole = std::string(stamp).append(kZeros);
  const auto part = [&](std::size_t from, std::size_t length) { return whole.substr(from, length); };
  const int year = foundation::ReadInteger(part(0, 4));
  const int month = foundation::ReadInteger(part(4, 2));
  const int day = foundation::ReadInteger(part(6, 2));
  if (year < 1900 || month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
  char date[40];
  std::snprintf(date, sizeof date, "%d-%d-%d ", year, month, day);
  const std::int64_t midnight = foundation::DayNumber({year, month, day}) * kDay;
  return date + part(8, 2) + ":" + part(10, 2) + ":" + part(12, 2) + "  " +
         std::string(LabelOf((SecondsOf(now) - midnight) / kDay));
}

}  // namespace kova::mail
