#include "postal/address_choice.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <utility>

#include "platform/text932/cp932.h"
#include "postal/address_text.h"

namespace kova::postal {
namespace {

// Between code and address, where no typed text has it.
constexpr char16_t kBorder = 0;

std::vector<std::u16string> WordsOf(std::string_view typed) {
  const std::string text = text932::ReplaceAll(typed, "　", " ");
  std::vector<std::u16string> words;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t space = std::min(text.find(' ', from), text.size());
    std::u16string word = SearchForm(std::string_view(text).substr(from, space - from));
    if (!word.empty()) words.push_back(std::move(word));
    from = space + 1;
  }
  return words;
}

/// Whole months from one day to another; days of the month 0 to 31.
int MonthsBetween(const std::tm& from, const std::tm& to) {
  return (to.tm_year - from.tm_year) * 12 + to.tm_mon - from.tm_mon - (to.tm_mday < from.tm_mday ? 1 : 0);
}

}  // namespace

AddressChoice::AddressChoice(Candidates candidates)
    : candidates_(std::move(candidates)), rows_(candidates_.list.size()) {
  std::iota(rows_.begin(), rows_.end(), std::size_t{0});
}

void AddressChoice::Narrow(std::string_view typed) {
  const std::vector<std::u16string> words = WordsOf(typed);
  if (!words.empty() && forms_.empty()) {
    for (const Candidate& each : candidates_.list)
      forms_.push_back(SearchForm(each.postalCode) + kBorder + SearchForm(each.address));
  }
  rows_.clear();
  for (std::size_t i = 0; i < candidates_.list.size(); ++i) {
    const auto occurs = [&](const std::u16string& word) { return forms_[i].find(word) != word.npos; };
    if (std::all_of(words.begin(), words.end(), occurs)) rows_.push_back(i);
  }
}

std::string ListAgeText(const std::tm& written, const std::tm& today) {
  if (written.tm_mday == 0) return {};
  const int months = MonthsBetween(written, today);
  std::string age = "1か月以内";
  if (months >= 24) {
    age = std::to_string(months / 12) + "年前";
  } else if (months >= 1) {
    age = std::to_string(months) + "か月前";
  }
  char day[64];
  std::snprintf(day, sizeof day, "%d年%d月%d日", written.tm_year + 1900, written.tm_mon + 1, written.tm_mday);
  return "住所データ: " + std::string(day) + "（" + age + "）";
}

}  // namespace kova::postal
