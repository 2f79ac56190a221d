#pragma once

// Programs started on the user's behalf and waited for.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kova::os {

enum class ChildOutcome {
  kExited,        // it ended; `exitCode` says how
  kNotStarted,    // there is no such program, it could not be started, or the command line is too long
  kStillRunning,  // the limit passed first; it goes on by itself
  kFailed,        // it was started, but its end cannot be told
};

struct ChildResult {
  ChildOutcome outcome = ChildOutcome::kFailed;
  std::uint32_t exitCode = 0;  // what the program gave; of one that crashed, not 0
};

class ChildPrograms {
 public:
  virtual ~ChildPrograms() = default;

  /// Starts the program that the first word of `commandLine` names (a relative name counts from the current
  /// directory), hidden, without inherited handles, and waits for it at most `limit` milliseconds. The
  /// program receives exactly these bytes as its command line; nothing is quoted or escaped. (A Windows whose
  /// own code page is 932 passes half a character on as "・", together with the byte behind it.) A line that
  /// holds a NUL, or 32,767 or more UTF-16 units as the system counts it, is not started.
  ///
  /// Elsewhere the program is what stands before the first blank, with "/" for "\", and all that follows is
  /// its one argument; its standard streams lead nowhere.
  virtual ChildResult Run(std::string_view commandLine, int limit) = 0;
};

/// Starts one of this project's own programs, which take their arguments in Unicode, hidden and without inherited handles,
/// and leaves it to itself: it goes on when this one ends. `program` is a full name; it and the arguments are code page
/// 932, and each argument arrives as it is, blanks, quotes and "\\" at its end included. False when it cannot be started.
[[nodiscard]] bool StartProgram(std::string_view program, std::span<const std::string> arguments);

/// The machine's own programs. It keeps no state.
ChildPrograms& RealChildPrograms();

}  // namespace kova::os
