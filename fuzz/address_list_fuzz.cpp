// A list of any bytes, searched: the first byte says how, the rest up to a NUL is the key, behind it is the
// list.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/testing/fake_files.h"
#include "platform/text932/cp932.h"
#include "postal/address_choice.h"
#include "postal/address_list.h"
#include "postal/address_lookup.h"
#include "postal/address_text.h"

namespace {

using namespace kova::postal;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Dropping one character after the other from the key finds what one pass finds. (But for half-width sound
// marks, which are one character with the kana before them.)
void OnePassIsEnough(std::string_view list, AddressQuery query) {
  if (query.key.find_first_of("\xDE\xDF") != query.key.npos) return;
  query.use = KeyUse::kLongestBeginning;
  const auto found = FindEntries(list, query);
  query.use = KeyUse::kWhole;
  std::vector<std::string> byDropping;
  for (std::string_view key = query.key; !key.empty() && byDropping.empty();) {
    query.key = key;
    byDropping = FindEntries(list, query);
    key = kova::text932::CutAtCharacter(key, key.size() - 1);
  }
  Require(found == byDropping);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string_view key = rest.substr(0, std::min<std::size_t>(rest.find('\0'), 60));
  const std::string_view list = rest.substr(std::min(key.size() + 1, rest.size()));
  const AddressQuery query{data[0] % 16, key, data[0] * 129u};
  for (const std::string& each : FindEntries(list, query))
    Require(each.size() <= list.size() + kAddressColumns);
  OnePassIsEnough(list, query);
  kova::os::testing::FakeFiles files;
  files.contents["L"] = list;
  for (const Candidates& found : {AddressesOfCode(files, "L", key), CodesOfAddress(files, "L", key)}) {
    for (std::size_t i = 0; i < found.list.size(); ++i) Require(!found.Answer(i).empty());
    AddressChoice choice(found);
    choice.Narrow(rest.substr(0, 3));
    Require(choice.Count() <= choice.Total());
  }
  return 0;
}
