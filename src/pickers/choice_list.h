#pragma once

// What a drop-down list is to show and which entry is selected, apart from any window.

#include <memory>
#include <string_view>
#include <vector>

namespace kova::pickers {

/// Its bytes live as long as the list or a copy of it.
struct Choice {
  std::string_view text;  // code page 932
  std::string_view data;  // of its item data block, terminators included; empty: the entry carries none
};

struct ChoiceList {
  std::vector<Choice> entries;
  int selected = -1;  // -1: none
  /// The record store's result for the table, 0 when it could be read. Whatever was read is in `entries`.
  int result = 0;
  /// What the bytes of the entries lie in: shared with the connection's cache where that has them.
  std::vector<std::shared_ptr<const void>> sources;
};

}  // namespace kova::pickers
