#pragma once

// The page that shows where the patients live: one circle and one labelled marker a place.

#include <optional>
#include <string>
#include <string_view>

#include "foundation/progress.h"
#include "postal/post_table.h"

namespace kova::postal {

/// The smallest box around all places; as it is, it holds none.
struct MapBounds {
  double minLatitude = 999.0;
  double maxLatitude = 0.0;
  double minLongitude = 999.0;
  double maxLongitude = 0.0;
};

/// "RemapPostList": gathers the counted entries of `table` by place into the empty table `places`, whose
/// codes are "latitude,longitude" to six decimals. Labels of one place are joined by "、", each once. The box
/// around them; nothing when the user stopped it.
std::optional<MapBounds> GatherPlaces(const PostTable& table, PlaceTable& places,
                                      foundation::Progress& progress);

/// The zoom at which the box fits the page.
int ZoomFor(const MapBounds& bounds);

/// The colour of a place by its number of patients: "#ff2020".
std::string_view ColourOf(int count);

/// The page: the template's lines, with the view put before a line that contains "//<setView>", and the
/// places before one that contains "//<Maker>" and not that. Line ends are CR LF. Labels stay inside their
/// JavaScript strings whatever they hold.
std::string MapPage(std::string_view pageTemplate, const PlaceTable& places, const MapBounds& bounds);

/// A text (code page 932) as the inside of a JavaScript string in a page: nothing in it ends the string or
/// the script.
std::string ScriptText(std::string_view text);

}  // namespace kova::postal
