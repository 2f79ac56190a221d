#include "postal/patient_map.h"

#include <algorithm>
#include <cstdio>

#include "platform/text932/cp932.h"

namespace kova::postal {
namespace {

constexpr std::size_t kEntriesAReport = 1024;
constexpr std::string_view kViewMark = "//<setView>";
constexpr std::string_view kPlacesMark = "//<Maker>";

template <typename... Values>
std::string Format(const char* format, Values... values) {
  std::string text(static_cast<std::size_t>(std::snprintf(nullptr, 0, format, values...)), '\0');
  std::snprintf(text.data(), text.size() + 1, format, values...);
  return text;
}

void Widen(MapBounds& bounds, const tagPOST_LIST& entry) {
  bounds.minLatitude = std::min(bounds.minLatitude, entry.latitude);
  bounds.maxLatitude = std::max(bounds.maxLatitude, entry.latitude);
  bounds.minLongitude = std::min(bounds.minLongitude, entry.longitude);
  bounds.maxLongitude = std::max(bounds.maxLongitude, entry.longitude);
}

std::string ViewLine(const MapBounds& bounds) {
  return Format("          map.setView([%f,%f], %d);\r\n", (bounds.minLatitude + bounds.maxLatitude) * 0.5,
                (bounds.minLongitude + bounds.maxLongitude) * 0.5, ZoomFor(bounds));
}

void AppendPlace(std::string& page, const tagPOST_LIST& place) {
  const std::string at = Format("[%f,%f]", place.latitude, place.longitude);
  const std::string colour = "\"" + std::string(ColourOf(place.count)) + "\"";
  page.append("          L.circleMarker(").append(at).append(", { radius: 20, color: ").append(colour);
  page.append(", weight: 4, fill: true, fillColor: ")
      .append(colour)
      .append(", opacity: 0.8  }).addTo(map);\r\n");
  page.append("          L.marker(").append(at).append(", { title: \"[").append(ScriptText(place.text));
  page.append(":").append(std::to_string(place.count)).append("件]\" }).addTo(map);\r\n");
}

}  // namespace

std::optional<MapBounds> GatherPlaces(const PostTable& table, PlaceTable& places,
                                      foundation::Progress& progress) {
  MapBounds bounds;
  for (std::size_t i = 0; i < table.Size(); ++i) {
    if (i % kEntriesAReport == 0 &&
        !progress.Report(static_cast<double>(i) / static_cast<double>(table.Size())))
      return std::nullopt;
    if (table.CountAt(i) == 0) continue;
    const auto entry = table.EntryAt(i);
    if (!entry) continue;
    Widen(bounds, *entry);
    places.Add(*entry);
  }
  return bounds;
}

int ZoomFor(const MapBounds& bounds) {
  const double span =
      std::max(bounds.maxLatitude - bounds.minLatitude, bounds.maxLongitude - bounds.minLongitude);
  // Zoom 8 is deliberately never chosen.
  if (span > 15.0) return 5;
  if (span > 7.3) return 6;
  if (span > 3.9) return 7;
  if (span > 1.9) return 9;
  if (span > 0.9) return 10;
  return span > 0.5 ? 11 : 12;
}

std::string_view ColourOf(int count) {
  if (count >= 20) return "#ff2020";
  if (count >= 10) return "#ff8000";
  return count >= 5 ? "#509950" : "#5050ff";
}

std::string MapPage(std::string_view pageTemplate, const PlaceTable& places, const MapBounds& bounds) {
  std::string page;
  while (!pageTemplate.empty()) {
    const std::size_t end = pageTemplate.find('\n');
    std::string_view line = pageTemplate.substr(0, end);
    pageTemplate.remove_prefix(end == std::string_view::npos ? pageTemplate.size() : end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.find(kViewMark) != std::string_view::npos) {
      page += ViewLine(bounds);
    } else if (line.find(kPlacesMark) != std::string_view::npos) {
      for (const tagPOST_LIST& place : places.Entries()) AppendPlace(page, place);
    }
    page.append(line).append("\r\n");
  }
  return page;
}

std::string ScriptText(std::string_view text) {
  std::string safe;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = text932::CharLength(text, i);
    const auto c = static_cast<unsigned char>(text[i]);
    if (length == 2) {
      safe.append(text.substr(i, 2));  // its second byte may look like a backslash, and is none
    } else if (c < 0x20 || c == 0x7F || c == '"' || c == '\\' || c == '<' || c == '>' || c == '&') {
      safe += Format("\\u%04x", c);
    } else {
      // Half a character would take the quotation mark behind it along.
      safe += text932::IsLeadByte(c) ? '?' : text[i];
    }
    i += length;
  }
  return safe;
}

}  // namespace kova::postal
