#pragma once

// What every console program here does alike: arguments and output in UTF-8 whatever the system's code page
// is, one clear line on standard error and exit code 2 for a call that cannot be understood.

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kova::hosts {

/// A call that cannot be carried out as it was given; `what()` is one line in UTF-8 for who called.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr int kUsageExitCode = 2;

using Program = int (*)(const std::vector<std::string>& arguments);

/// Runs `program` with the arguments behind the program's name, in UTF-8, and gives its exit code. A
/// UsageError, or memory that runs out, ends it with one line "NAME: what" and exit code 2.
int RunConsole(std::string_view name, int argc, char** argv, Program program);

/// Writes UTF-8 bytes as they are, with "\n" for a line end, to standard output. Throws UsageError when they
/// cannot be written.
void Print(std::string_view utf8);

/// The same to standard error; a failure is not told.
void PrintError(std::string_view utf8);

/// `text` with its control characters as the pictures that Unicode has for them (␉ ␊ ␍ ...), so that a value
/// stays on its line and in its column. Code page 932 has no such picture, so nothing else looks like one.
std::string ShowControls(std::string_view utf8);

/// The code page 932 text of an argument, the pictures of ShowControls taken for what they show. Throws
/// UsageError, naming `what`, when the code page cannot hold it.
std::string TextArgument(std::string_view utf8, std::string_view what);

/// The file or folder that the caller's current directory makes of a name, both in UTF-8.
std::string AbsoluteName(std::string_view utf8);

/// A whole number in decimal, all of the argument, within the limits; else UsageError, naming `what`.
long long NumberArgument(std::string_view utf8, std::string_view what, long long least, long long most);

}  // namespace kova::hosts
