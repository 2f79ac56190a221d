#pragma once

// The practice's names for its free tables and free dates: text files in the database folder, one name a
// line, which is the name of number 0, 1, 2, ... A line without a name leaves its number out.

#include <string>
#include <string_view>
#include <vector>

#include "platform/os/files.h"

namespace kova::pickers {

inline constexpr std::string_view kFreeTableNames = "freetblname.dat";
inline constexpr std::string_view kFreeDateNames = "freedatename.dat";

struct NumberedName {
  std::string name;  // code page 932
  int number = 0;
  bool operator==(const NumberedName&) const = default;
};

/// The names in a file of the database folder, which ends in "\"; none without a folder, or when the file is
/// missing or cannot be read.
std::vector<NumberedName> ReadNameFile(os::Files& files, std::string_view databaseFolder,
                                       std::string_view fileName);

/// "NAME NUMBER", as lists show it.
std::string ListText(const NumberedName& name);

}  // namespace kova::pickers
