#pragma once

// Makes the coordinate list of the map: where each code of the postal address list lies, by a table of towns
// with coordinates.

#include <cstddef>
#include <string>
#include <string_view>

namespace kova::postal {

struct GeoOutcome {
  std::size_t towns = 0;       // codes that lie where their town does
  std::size_t cities = 0;      // codes that lie in the middle of their city, whose towns do not have theirs
  std::size_t nowhere = 0;     // codes of which not even the city is in the table; they are left out
  std::size_t faultyLine = 0;  // of the table, from 1; 0: none
};

/// The lines of "PostGeo.csv", by code, one a code. The table's first line names its columns, and these must
/// be there: 都道府県名, 市区町村名, 大字町丁目名, 緯度, 経度. Blocks of a town (丁目) count as the town,
/// which lies in their middle; of a town that is not in the table its beginning may be. With a faulty line
/// `coordinates` stays as it was.
[[nodiscard]] GeoOutcome MakeCoordinates(std::string_view townTable, std::string_view addressList,
                                         std::string& coordinates);

}  // namespace kova::postal
