#pragma once

// What a drop-down list is to show and which entry is selected, apart from any window.

#include <string>
#include <vector>

namespace kova::pickers {

struct Choice {
  std::string text;  // code page 932
  std::string data;  // the bytes of its item data block, terminators included; empty: the entry carries none
  bool operator==(const Choice&) const = default;
};

struct ChoiceList {
  std::vector<Choice> entries;
  int selected = -1;  // -1: none
  /// The record store's result for the table, 0 when it could be read. Whatever was read is in `entries`.
  int result = 0;
};

}  // namespace kova::pickers
