// A coordinate list of any bytes, counted in and made a page of: the bytes up to a NUL are patients' codes, a
// line each, those behind it the list, which is also taken for a table of towns.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "postal/geo_import.h"
#include "postal/patient_map.h"
#include "postal/post_table.h"

namespace {

using namespace kova::postal;

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string_view codes = input.substr(0, input.find('\0'));
  const std::string_view list = input.substr(std::min(codes.size() + 1, size));
  kova::foundation::NoProgress progress;
  PostTable table;
  Require(table.Load(std::string(list), progress));
  for (; !codes.empty(); codes.remove_prefix(std::min(codes.find('\n'), codes.size() - 1) + 1))
    table.Count(codes.substr(0, codes.find('\n')));
  PlaceTable places;
  const auto bounds = GatherPlaces(table, places, progress);
  Require(bounds.has_value());
  for (const tagPOST_LIST& place : places.Entries()) {
    Require(place.count > 0 && std::fabs(place.latitude) <= 90 && std::fabs(place.longitude) <= 180);
    // Nothing in a label ends its string or its script.
    const std::string label = ScriptText(place.text);
    Require(label.find_first_of("\"<>\r\n") == label.npos);
  }
  const std::string page = MapPage("//<setView>\n//<Maker>\n", places, *bounds);
  Require(std::count(page.begin(), page.end(), '\n') ==
          3 + 2 * static_cast<std::ptrdiff_t>(places.Entries().size()));
  table.ResetCounts();
  std::string made;
  (void)MakeCoordinates(list, "1000001,x\n", made);
  return 0;
}
