#pragma once

// Where each postal code lies, and how many patients live there.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/progress.h"

/// One postal code, or one place of the map. The texts (code page 932) live as long as their table.
struct tagPOST_LIST {
  std::string_view code;  // seven digits
  std::string_view text;  // label: the town; of a place of the map all that lie there
  double latitude = 0;
  double longitude = 0;
  int count = 0;  // patients
};

namespace kova::postal {

/// A hash table by postal code. A line of the coordinate file is looked at when it is counted or shown; until
/// then the table knows where it begins.
class PostTable {
 public:
  PostTable() = default;
  PostTable(const PostTable&) = delete;
  PostTable& operator=(const PostTable&) = delete;

  /// Fills the empty table from the bytes of a coordinate file: "code,text,latitude,longitude" a line. Of two
  /// lines with one code the later counts. False when the user stopped it; the table is then empty.
  bool Load(std::string csv, foundation::Progress& progress);

  /// "SetPostData": counts one patient's postal code: without "-", filled up with zeros to seven digits, cut
  /// there. Codes that the table has not are passed over.
  void Count(std::string_view code);
  /// "ResetPostList": every count 0.
  void ResetCounts();

  /// Lines, of a coordinate file also those that say no place.
  std::size_t Size() const { return rows_.size(); }
  bool IsEmpty() const { return rows_.empty(); }
  int CountAt(std::size_t row) const { return rows_[row].count; }
  /// Nothing for a line with less than four columns, or without a place on earth.
  std::optional<tagPOST_LIST> EntryAt(std::size_t row) const;

 private:
  struct Row {
    std::uint32_t line = 0;  // where it begins in csv_
    std::int32_t count = 0;
  };

  struct Slot {
    std::uint32_t row = 0;   // its number + 1; 0 free
    std::uint32_t hash = 0;  // of its code, so that others are told apart without looking at their lines
  };

  void Clear();
  void Put(std::size_t line);
  void MakeSlots(std::size_t rows);
  /// The slot of a code, or the free one where it belongs.
  std::size_t SlotOf(std::string_view code, std::uint32_t hash) const;
  std::string_view CodeAt(std::size_t line) const;
  bool IsCodeAt(std::size_t line, std::string_view code) const;

  std::string csv_;
  std::vector<Row> rows_;
  std::vector<Slot> slots_;  // a power of two, at most half of it used
};

/// The places of a map, in the order in which they came.
class PlaceTable {
 public:
  PlaceTable() = default;
  PlaceTable(const PlaceTable&) = delete;
  PlaceTable& operator=(const PlaceTable&) = delete;

  /// Adds the entry to the place where it lies, to six decimals: the numbers are added, its label is joined
  /// to the others by "、", each once. A new place's code is "latitude,longitude".
  void Add(const tagPOST_LIST& entry);

  const std::deque<tagPOST_LIST>& Entries() const { return entries_; }

 private:
  std::deque<std::string> texts_;
  std::deque<tagPOST_LIST> entries_;
  std::unordered_map<std::string_view, tagPOST_LIST*> byCode_;
};

}  // namespace kova::postal
