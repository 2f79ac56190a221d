#include "postal/geo_import.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "platform/text932/cp932.h"
#include "postal/address_list.h"
#include "postal/address_text.h"
#include "postal/published_file.h"

namespace kova::postal {
namespace {

constexpr int kCodeColumn = 2, kAddressColumn = 6;
constexpr std::array<std::string_view, 5> kColumnNames = {"都道府県名", "市区町村名", "大字町丁目名", "緯度",
                                                          "経度"};
enum Column { kPrefecture, kCity, kTown, kLatitude, kLongitude };
using Columns = std::array<std::size_t, kColumnNames.size()>;

/// The middle of what was added.
struct Place {
  double latitude = 0;
  double longitude = 0;
  int count = 0;
  bool isCity = false;

  void Add(double north, double east) {
    latitude += north;
    longitude += east;
    ++count;
  }
};

std::optional<Columns> ColumnsOf(const Fields& names) {
  Columns columns{};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const auto at = std::find(names.begin(), names.end(), kColumnNames[i]);
    if (at == names.end()) return std::nullopt;
    columns[i] = static_cast<std::size_t>(at - names.begin());
  }
  return columns;
}

std::optional<double> DegreesIn(std::string_view text, double most) {
  double degrees = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), degrees);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && std::fabs(degrees) <= most ? std::optional(degrees) : std::nullopt;
}

bool TakeLast(std::string_view& text, std::string_view end) {
  if (!text.ends_with(end) ||
      text932::CutAtCharacter(text, text.size() - end.size()).size() != text.size() - end.size())
    return false;
  text.remove_suffix(end.size());
  return true;
}

/// "北幸一丁目" is in "北幸".
std::string_view WithoutBlock(std::string_view town) {
  std::string_view rest = town;
  if (!TakeLast(rest, "丁目")) return town;
  for (bool isNumber = true; isNumber;) {
    isNumber = false;
    for (const std::string_view digit : {"一", "二", "三", "四", "五", "六", "七", "八", "九", "十"})
      isNumber = TakeLast(rest, digit) || isNumber;
  }
  return rest;
}

class TownTable {
 public:
  /// False for a line that is none of the table's.
  bool Take(const Fields& fields, const Columns& columns) {
    if (*std::max_element(columns.begin(), columns.end()) >= fields.size()) return false;
    const auto north = DegreesIn(fields[columns[kLatitude]], 90),
               east = DegreesIn(fields[columns[kLongitude]], 180);
    if (!north || !east) return false;
    const std::string city = fields[columns[kPrefecture]] + fields[columns[kCity]];
    const std::string town = city + std::string(WithoutBlock(fields[columns[kTown]]));
    Place& middle = places_[SearchForm(city)];
    middle.Add(*north, *east);
    middle.isCity = true;
    if (town != city) places_[SearchForm(town)].Add(*north, *east);
    return true;
  }

  /// The place of the longest beginning of the address that has one.
  const Place* Find(std::string_view address) const {
    std::u16string form = SearchForm(address);
    for (; !form.empty(); form.pop_back()) {
      const auto found = places_.find(form);
      if (found != places_.end()) return &found->second;
    }
    return nullptr;
  }

 private:
  std::unordered_map<std::u16string, Place> places_;
};

/// The first address of each code.
std::map<std::string, std::string> AddressesByCode(std::string_view list) {
  std::map<std::string, std::string> addresses;
  ListLines lines(list);
  for (std::string_view line; lines.Next(line);) {
    LineFields fields(line);
    std::string_view field;
    if (!fields.Skip(kCodeColumn) || !fields.Next(field) || field.empty()) continue;
    std::string code(field);
    if (fields.Skip(kAddressColumn - kCodeColumn - 1) && fields.Next(field))
      addresses.try_emplace(std::move(code), field);
  }
  return addresses;
}

}  // namespace

GeoOutcome MakeCoordinates(std::string_view townTable, std::string_view addressList,
                           std::string& coordinates) {
  GeoOutcome outcome;
  PublishedFile file(townTable);
  Fields fields;
  const auto columns = file.Next(fields) ? ColumnsOf(fields) : std::nullopt;
  if (!columns) return {0, 0, 0, 1};
  TownTable towns;
  while (file.Next(fields)) {
    if (!towns.Take(fields, *columns)) return {0, 0, 0, file.LineNumber()};
  }
  std::string made;
  for (const auto& [code, address] : AddressesByCode(addressList)) {
    const Place* place = towns.Find(address);
    ++(place == nullptr ? outcome.nowhere : place->isCity ? outcome.cities : outcome.towns);
    if (place == nullptr) continue;
    char numbers[64];
    std::snprintf(numbers, sizeof numbers, ",%.6f,%.6f\r\n", place->latitude / place->count,
                  place->longitude / place->count);
    // A comma in the label would shift the columns behind it.
    made.append(code).append(",").append(text932::ReplaceAll(address, ",", "，")).append(numbers);
  }
  coordinates = std::move(made);
  return outcome;
}

}  // namespace kova::postal
