#include "controls/list_columns.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <optional>
#include <set>

#include "foundation/number_text.h"

namespace kova::controls {
namespace {

using os::ApplicationProfile;

std::string ItemKey(int column) { return "Item" + std::to_string(column); }

std::string PositionKey(const char* name, std::size_t position) {
  char key[40];
  std::snprintf(key, sizeof key, "%s%02u", name, static_cast<unsigned>(position));
  return key;
}
std::string ColumnKey(std::size_t position) { return PositionKey("ListHeaderID", position); }
std::string WidthKey(std::size_t position) { return PositionKey("ListWidth", position); }

bool IsNumber(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

std::int32_t ReadWidth(const ApplicationProfile& profile, std::string_view section, std::size_t position) {
  const std::string text = profile.GetString(section, WidthKey(position), "");
  if (!IsNumber(text)) return kHiddenWidth;
  // The lowest number has no absolute value.
  return std::max(foundation::ReadInteger(text), -std::numeric_limits<std::int32_t>::max());
}

/// A number to store, and what reading gives without it.
struct Value {
  std::string section;
  std::string key;
  std::int32_t number;
  std::int32_t normally;
};

/// Stores all of them or, as far as the profile can be written at all, none.
bool Store(ApplicationProfile& profile, const std::vector<Value>& values) {
  std::vector<Value> before;
  for (const Value& value : values) {
    // What is there already is left alone: every writing renews the whole profile.
    if (profile.GetString(value.section, value.key, "") == std::to_string(value.number)) continue;
    before.push_back(value);
    before.back().number = profile.GetInt(value.section, value.key, value.normally);
    if (profile.WriteInt(value.section, value.key, value.number)) continue;
    before.pop_back();
    for (const Value& old : before) (void)profile.WriteInt(old.section, old.key, old.number);
    return false;
  }
  return true;
}

std::vector<Value> ValuesOf(std::string_view section, const std::vector<PlacedColumn>& columns) {
  std::vector<Value> values;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    values.push_back({std::string(section), ColumnKey(i), columns[i].column, static_cast<std::int32_t>(i)});
    values.push_back({std::string(section), WidthKey(i), columns[i].width, kHiddenWidth});
  }
  return values;
}

}  // namespace

bool IsItemShown(const ApplicationProfile& profile, std::string_view section, int column) {
  return profile.GetInt(section, ItemKey(column), 1) != 0;
}

bool StoreItems(ApplicationProfile& profile, std::string_view section, const std::vector<ShownItem>& items) {
  std::vector<Value> values;
  for (const ShownItem& item : items)
    values.push_back({std::string(section), ItemKey(item.column), item.isShown ? 1 : 0, 1});
  return Store(profile, values);
}

std::vector<PlacedColumn> ReadColumns(const ApplicationProfile& profile, std::string_view section,
                                      int count) {
  std::vector<PlacedColumn> columns(static_cast<std::size_t>(std::max(count, 0)));
  std::set<int> left;
  for (int column = 0; column < count; ++column) left.insert(column);
  std::vector<PlacedColumn*> unnamed;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i] = {profile.GetInt(section, ColumnKey(i), static_cast<std::int32_t>(i)),
                  ReadWidth(profile, section, i)};
    if (left.erase(columns[i].column) == 0) unnamed.push_back(&columns[i]);
  }
  for (PlacedColumn* each : unnamed) each->column = left.extract(left.begin()).value();
  return columns;
}

int StoredPositions(const ApplicationProfile& profile, std::string_view section) {
  int count = 0;
  for (int i = 0; i < kMostPositions; ++i) {
    const auto position = static_cast<std::size_t>(i);
    const bool isStored = !profile.GetString(section, ColumnKey(position), "").empty() ||
                          !profile.GetString(section, WidthKey(position), "").empty();
    if (isStored) count = i + 1;
  }
  return count;
}

std::vector<ColumnRow> RowsOf(const std::vector<PlacedColumn>& columns) {
  std::vector<ColumnRow> rows;
  for (const PlacedColumn& column : columns) rows.push_back({column.column, column.IsShown()});
  return rows;
}

int MoveRow(std::vector<ColumnRow>& rows, int from, int to) {
  const int last = static_cast<int>(rows.size()) - 1;
  if (from < 0 || from > last) return from;
  const int at = std::clamp(to, 0, last);
  const auto row = rows.begin() + from;
  if (at > from) std::rotate(row, row + 1, rows.begin() + at + 1);
  if (at < from) std::rotate(rows.begin() + at, row, row + 1);
  return at;
}

void ResetOrder(std::vector<ColumnRow>& rows) { std::ranges::sort(rows, {}, &ColumnRow::column); }

std::vector<PlacedColumn> Rearranged(const std::vector<PlacedColumn>& saved,
                                     const std::vector<ColumnRow>& rows) {
  std::vector<PlacedColumn> columns;
  for (const ColumnRow& row : rows) {
    const auto found = std::ranges::find(saved, row.column, &PlacedColumn::column);
    PlacedColumn column = found == saved.end() ? PlacedColumn{row.column, kHiddenWidth} : *found;
    if (column.IsShown() != row.isShown) column.width = column.width == 0 ? kHiddenWidth : -column.width;
    columns.push_back(column);
  }
  return columns;
}

PatientListChoices DefaultPatientListChoices() {
  PatientListChoices choices{};
  std::ranges::transform(kPatientListOptions, choices.begin(), &PatientListOption::normally);
  return choices;
}

PatientListChoices ReadPatientListChoices(const ApplicationProfile& profile) {
  PatientListChoices choices{};
  std::ranges::transform(kPatientListOptions, choices.begin(), [&](const PatientListOption& option) {
    return profile.GetInt(kPatientSection, option.key, option.normally ? 1 : 0) != 0;
  });
  return choices;
}

bool StoreColumns(ApplicationProfile& profile, std::string_view section,
                  const std::vector<PlacedColumn>& columns) {
  return Store(profile, ValuesOf(section, columns));
}

bool StoreColumns(ApplicationProfile& profile, std::string_view section,
                  const std::vector<PlacedColumn>& columns, const PatientListChoices& choices) {
  std::vector<Value> values = ValuesOf(section, columns);
  for (std::size_t i = 0; i < choices.size(); ++i) {
    const PatientListOption& option = kPatientListOptions[i];
    values.push_back(
        {std::string(kPatientSection), std::string(option.key), choices[i] ? 1 : 0, option.normally ? 1 : 0});
  }
  return Store(profile, values);
}

}  // namespace kova::controls
