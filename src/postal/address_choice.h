#pragma once

// What the choice among several addresses shows.

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "postal/address_lookup.h"

namespace kova::postal {

/// The candidates of a lookup, narrowed by what the user types.
class AddressChoice {
 public:
  explicit AddressChoice(Candidates candidates);

  /// Leaves those in which every word of `typed` occurs, in the code or the address, in any writing (see
  /// SearchForm). Words are parted by spaces; without a word all are left.
  void Narrow(std::string_view typed);

  Wanted WhatIsWanted() const { return candidates_.wanted; }
  std::size_t Total() const { return candidates_.list.size(); }
  /// Those that are left, in the list's order.
  std::size_t Count() const { return rows_.size(); }
  const Candidate& At(std::size_t row) const { return candidates_.list[rows_[row]]; }
  const std::string& AnswerAt(std::size_t row) const { return candidates_.Answer(rows_[row]); }

 private:
  Candidates candidates_;
  std::vector<std::u16string> forms_;  // of each candidate, once they are needed
  std::vector<std::size_t> rows_;
};

/// "住所データ: 2026年5月31日（5か月前）": when the list in use was written, and how long that is ago. Empty
/// for a list without a day.
std::string ListAgeText(const std::tm& written, const std::tm& today);

}  // namespace kova::postal
