#pragma once

// Makes the postal address list from what Japan Post publishes: the list of towns (15 columns) and the list
// of large offices with codes of their own (13 columns), each in its Shift-JIS or its UTF-8 edition.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kova::postal {

struct ImportOutcome {
  std::size_t entries = 0;     // lines that were appended
  std::size_t faultyLine = 0;  // the first line, counted from 1, that is of neither list; 0: there is none
  std::size_t unstorableLines = 0;  // lines with a character that code page 932 lacks; it became "?"
};

/// Appends the lines of the address list that `source` makes. With a faulty line (its columns or its code are
/// wrong, as in a file that was cut) the source is no such list as a whole, and `list` stays as it was.
///
/// Column 6 gets the whole address. A town's name that is spread over several lines is joined; notes in
/// brackets, and remarks in place of a name, are dropped. An office's address has a space behind the
/// prefecture: addresses are looked for without spaces, so that no patient gets an office's code.
[[nodiscard]] ImportOutcome AppendAddresses(std::string_view source, std::string& list);

/// A code and its addresses (joined by "、" where there are several) in two lists.
struct CodeChange {
  std::string code;
  std::string before;
  std::string after;
  bool operator==(const CodeChange&) const = default;
};

struct ListChanges {
  std::vector<CodeChange> added, removed, renamed;  // by code
};

/// What is different in the list `after`.
ListChanges CompareLists(std::string_view before, std::string_view after);
/// The same of two coordinate lists, by their labels.
ListChanges CompareCoordinates(std::string_view before, std::string_view after);

}  // namespace kova::postal
