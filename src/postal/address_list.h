#pragma once

// The postal address list "Address.csv": code page 932 text of up to 15 columns, counted from 0.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/files.h"

namespace kova::postal {

inline constexpr int kAddressColumns = 15;
inline constexpr int kCodeColumn = 2;     // seven digits without hyphen
inline constexpr int kAddressColumn = 6;  // prefecture, city and town in one

/// A larger list is not read.
inline constexpr std::size_t kLargestAddressList = std::size_t{256} << 20;

constexpr unsigned ColumnBit(int column) { return 1u << column; }

enum class KeyUse {
  kWhole,             // fields that begin with the key
  kLongestBeginning,  // fields that begin with as many of its characters as any field does
};

struct AddressQuery {
  int keyColumn = kCodeColumn;
  std::string_view key;
  unsigned columns = 0;  // which to give, by ColumnBit
  KeyUse use = KeyUse::kWhole;
};

/// True with a key, a key column among the 15, and some of the 15 columns to give.
bool IsSearchable(const AddressQuery& query);

/// The lines of a list that match, in their order, each as the texts of the requested columns joined by ",".
/// A column that a line does not have is empty.
///
/// A field in double quotes counts without them: a comma in it separates nothing, two quotes are one; without
/// a closing quote it goes to the end of the line. A first line with "Convert File Version" is a header;
/// "Flags N" in the second then says by its bits which of the 15 columns the lines have (decimal, or
/// hexadecimal behind "0x"; further bits mean nothing). Without "Flags " they have all of them.
///
/// Fields match as AddressKey says. Of those that match equally far, the ones that do so byte for byte are
/// given alone.
std::vector<std::string> FindEntries(std::string_view list, const AddressQuery& query);

/// `kNoList`: there is no such file, or it cannot be read (also when it is too large).
enum class SearchOutcome { kSearched, kRejected, kNoList };

/// FindEntries in the file `fileName`, which is read at once; `kRejected` without a name or IsSearchable.
[[nodiscard]] SearchOutcome SearchAddressFile(os::Files& files, std::string_view fileName,
                                              const AddressQuery& query, std::vector<std::string>& found);

/// Hands out a text's lines, without their ends ("\n" or "\r\n").
class ListLines {
 public:
  explicit ListLines(std::string_view text) : rest_(text) {}
  /// False behind the last one. An end behind the last line begins no further one.
  bool Next(std::string_view& line) {
    if (rest_.empty()) return false;
    const std::size_t end = rest_.find('\n');
    line = rest_.substr(0, end);
    rest_.remove_prefix(end == rest_.npos ? rest_.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return true;
  }
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

/// Hands out a line's fields.
class LineFields {
 public:
  explicit LineFields(std::string_view line) : rest_(line) {}
  /// The next field without its quotes; it lives until the next call. False behind the last one.
  bool Next(std::string_view& field);
  /// Passes over `count` fields; false when no field is behind them.
  bool Skip(int count);
  /// The line from the next field on.
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view NextQuoted();
  void Advance(std::size_t comma);

  std::string_view rest_;
  bool atEnd_ = false;
  std::string unquoted_;
};

/// Of the file in the program's folder.
std::string AddressFileName(std::string_view programFolder);

}  // namespace kova::postal
