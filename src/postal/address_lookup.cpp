#include "postal/address_lookup.h"

#include <algorithm>
#include <set>
#include <utility>

#include "foundation/kana.h"
#include "platform/text932/cp932.h"
#include "postal/address_list.h"
#include "postal/address_text.h"

namespace kova::postal {
namespace {

constexpr std::size_t kDigitsBeforeHyphen = 3;

std::string PlainCode(std::string_view code) {
  const std::string bare = text932::ReplaceAll(WithoutHyphensAndSpaces(code), "〒", "");
  return foundation::MapKana(bare, foundation::KanaForm::kHalfKatakana);
}

std::vector<std::string> Search(os::Files& files, std::string_view fileName, const AddressQuery& query) {
  std::vector<std::string> found;
  // A list that is missing and a text that cannot be looked for find nothing, without a word.
  if (SearchAddressFile(files, fileName, query, found) != SearchOutcome::kSearched) found.clear();
  return found;
}

// Each text once, in their order.
std::vector<std::string> WithoutRepetitions(std::vector<std::string> texts) {
  std::set<std::string_view> seen;
  std::vector<bool> isFirst(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) isFirst[i] = seen.insert(texts[i]).second;
  std::vector<std::string> rest;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (isFirst[i]) rest.push_back(std::move(texts[i]));
  }
  return rest;
}

// "2310017,ADDRESS" of a line that has both columns.
Candidate CandidateOf(std::string_view codeAndAddress) {
  const std::size_t comma = codeAndAddress.find(',');
  Candidate candidate{std::string(codeAndAddress.substr(0, comma)),
                      std::string(codeAndAddress.substr(comma + 1))};
  if (candidate.postalCode.size() > kDigitsBeforeHyphen)
    candidate.postalCode.insert(kDigitsBeforeHyphen, 1, '-');
  return candidate;
}

}  // namespace

std::optional<std::string> Candidates::SureAnswer() const {
  if (list.empty()) return std::string();
  return list.size() == 1 ? std::optional(Answer(0)) : std::nullopt;
}

Candidates AddressesOfCode(os::Files& files, std::string_view fileName, std::string_view code) {
  const std::string key = PlainCode(code);
  Candidates candidates{Wanted::kAddress, {}};
  const AddressQuery query{kCodeColumn, key, ColumnBit(kAddressColumn), KeyUse::kWhole};
  for (std::string& address : WithoutRepetitions(Search(files, fileName, query))) {
    if (!address.empty()) candidates.list.push_back({"", std::move(address)});
  }
  return candidates;
}

Candidates CodesOfAddress(os::Files& files, std::string_view fileName, std::string_view address) {
  const std::string bare = WithoutSpaces(address);
  const AddressQuery query{kAddressColumn, bare.empty() ? address : bare,
                           ColumnBit(kCodeColumn) | ColumnBit(kAddressColumn),
                           bare.empty() ? KeyUse::kWhole : KeyUse::kLongestBeginning};
  Candidates candidates{Wanted::kPostalCode, {}};
  for (const std::string& each : WithoutRepetitions(Search(files, fileName, query))) {
    Candidate candidate = CandidateOf(each);
    if (!candidate.postalCode.empty()) candidates.list.push_back(std::move(candidate));
  }
  return candidates;
}

}  // namespace kova::postal
