#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kova::hosts {

/// Columns that a terminal needs for a UTF-8 text: two for a full-width character, one for the others.
std::size_t DisplayWidth(std::string_view utf8);

struct Column {
  std::string title;
  bool right = false;  ///< numbers: aligned to the right
};

/// The rows as an aligned table under a line of titles and a rule, in UTF-8.
std::string FormatTable(const std::vector<Column>& columns,
                        const std::vector<std::vector<std::string>>& rows);

}  // namespace kova::hosts
