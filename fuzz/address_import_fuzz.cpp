// A published list of any bytes: it is refused and leaves the list alone, or every line of the list that it
// makes can be read again, and is the same list for the comparison.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "postal/address_import.h"
#include "postal/address_list.h"

namespace {

using namespace kova::postal;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::size_t ReadableLines(std::string_view list) {
  std::size_t count = 0;
  ListLines lines(list);
  std::string_view line, field;
  while (lines.Next(line)) {
    LineFields fields(line);
    int columns = 0;
    while (fields.Next(field)) {
      if (columns == kCodeColumn) Require(field.size() == 7);
      ++columns;
    }
    Require(columns == kAddressColumns);
    ++count;
  }
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  std::string list;
  const ImportOutcome outcome = AppendAddresses(source, list);
  if (outcome.faultyLine != 0) {
    Require(list.empty() && outcome.entries == 0);
    return 0;
  }
  Require(ReadableLines(list) == outcome.entries);
  const ListChanges same = CompareLists(list, list);
  Require(same.added.empty() && same.removed.empty() && same.renamed.empty());
  (void)CompareLists(source, list);
  return 0;
}
