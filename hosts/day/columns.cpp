#include "hosts/day/columns.h"

#include <algorithm>

namespace kova::hosts {
namespace {

// Of the characters that code page 932 holds, these are wide: everything from the general symbols on but the
// half-width kana. Greek and Cyrillic are two columns wide in Japanese fonts and one elsewhere; one is taken.
bool IsWide(char32_t c) {
  const bool halfKana = c >= 0xFF61 && c <= 0xFF9F;
  return (c >= 0x2E80 && !halfKana && c < 0xE000) || (c >= 0xF900 && !halfKana);
}

std::string Padded(const std::string& text, std::size_t width, bool right) {
  const std::string fill(width - std::min(width, DisplayWidth(text)), ' ');
  return right ? fill + text : text + fill;
}

}  // namespace

std::size_t DisplayWidth(std::string_view utf8) {
  std::size_t width = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t c = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length && at + i < utf8.size(); ++i)
      c = c << 6 | (static_cast<unsigned char>(utf8[at + i]) & 0x3FU);
    width += IsWide(c) ? 2 : 1;
    at += length;
  }
  return width;
}

std::string FormatTable(const std::vector<Column>& columns,
                        const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  std::vector<std::string> titles, rules;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    widths.push_back(DisplayWidth(columns[i].title));
    for (const auto& row : rows) widths[i] = std::max(widths[i], DisplayWidth(row[i]));
    titles.push_back(columns[i].title);
    rules.emplace_back(widths[i], '-');
  }
  std::string table;
  const auto append = [&](const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) line += "  ";
      line += Padded(row[i], widths[i], columns[i].right);
    }
    table += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
  };
  append(titles);
  append(rules);
  for (const auto& row : rows) append(row);
  return table;
}

}  // namespace kova::hosts
