#pragma once

// What every companion program does alike: the raw command line in, an exit code and one clear line on standard
// error out, and mails kept as files in a folder.

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/companions/command_line.h"

namespace kova::companions {

inline constexpr int kFailedExitCode = 1;
inline constexpr int kUsageExitCode = 2;

/// It was not done, or not all of it; `what()` is one line in UTF-8.
class CompanionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A command line that is none of the program's.
class CommandLineError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Runs `program` with the command line's bytes behind the program's name, whatever the system's code page
/// is. Elsewhere than on Windows these are the arguments with a blank between. Exit code 0 when it returns;
/// else it says why on standard error and gives one of the codes above.
int RunCompanion(std::string_view name, int argc, char** argv, void (*program)(std::string_view line));

/// A variable of the environment in code page 932; empty without one, or when the code page cannot hold it.
std::string EnvironmentText(const char* name);

/// Where mails are kept: the folder that the environment variable names, else `name` in the suite's folder
/// "Mail". With "\" at its end. It need not exist yet.
std::string MailFolder(const char* variable, std::string_view name);

struct Sender {
  std::string name;
  std::string address;
};
/// Who the mails are from, by "mail.ini" in the folder "Mail" (section "Mail": "Sender" and "Address"); a
/// placeholder that nobody can answer to where it says nothing usable.
Sender ReadSender();

/// Further fields of a mail's head: name and text.
using Fields = std::vector<std::pair<std::string, std::string>>;

/// Keeps a mail as a new file in `folder`, which is made when missing. Throws CompanionError, and keeps nothing,
/// when there is no address, one of them is unusable, or the file cannot be written.
void KeepMail(const MailCommand& mail, const Sender& sender, const std::string& folder, Fields fields = {});

/// Keeps a finished message as a new file with `name` in the file's name.
void KeepMessage(std::string_view content, std::string_view name, const std::string& folder);

}  // namespace kova::companions
