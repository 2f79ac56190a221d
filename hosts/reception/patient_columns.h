#pragma once

// What the column dialog stored for a list, as a host reads it from its own profile.

#include <vector>

namespace kova::hosts {

/// A column in the order of display. A negative width: it is hidden, and was that wide.
struct ShownColumn {
  int column;
  int width;
};

/// As many columns as `normally` has, each once; `normally` itself when nothing is stored yet.
std::vector<ShownColumn> ReadColumns(const char* section, const std::vector<ShownColumn>& normally);
void WriteColumns(const char* section, const std::vector<ShownColumn>& columns);

/// The patient list's option "Parent": show the guardian.
bool IsGuardianShown();

}  // namespace kova::hosts
