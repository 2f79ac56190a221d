#pragma once

// The commands that work on the record store: dump, put, set, delete, create-db and what else
// concerns a database as a whole, tables.

#include <string>
#include <string_view>
#include <vector>

#include "hosts/console/practice.h"

namespace kova::hosts {

struct TableCommand {
  std::string_view name;
  std::string_view arguments;  ///< as in the usage
  std::string_view meaning;
  /// Prints what it has to; throws UsageError.
  void (*run)(const std::vector<std::string>& arguments, Practice& practice);
};

const std::vector<TableCommand>& TableCommands();

/// A result of the store as the command's answer, with what it means on standard error; with a line of what there is more to say
/// of a failure.
void PrintResult(int result);
void PrintOutcome(int result, const std::string& problem);

}  // namespace kova::hosts
