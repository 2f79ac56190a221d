#pragma once

// The companion programs that send mail, and their command lines. docs/mail-programs.md has them; they are
// relied on by those programs. Values are put in as they are, up to a NUL: nothing is quoted or escaped
// (deliberately).

#include <string>
#include <string_view>

#include "platform/os/child_programs.h"

namespace kova::mail {

/// What a command line of one mail says.
struct OutgoingMail {
  std::string_view to;  // addresses with "," between
  std::string_view subject;
  std::string_view body;
  std::string_view patientId;
  std::string_view staffId;
};

std::string SendMailCommand(const OutgoingMail& mail);
std::string DraftMailCommand(const OutgoingMail& mail, std::string_view itemId);
std::string SendEmlFilesCommand(std::string_view path, bool doNotKeep);
std::string SendReservationMailCommand(std::string_view to, std::string_view date);

/// How long a companion program is waited for, in milliseconds.
inline constexpr int kMailProgramLimit = 60000;

/// Runs the command line: 1 when the program ended within the limit and said success (exit code 0), else 0.
/// One that goes on longer is left alone.
int ExecMail(os::ChildPrograms& programs, std::string_view commandLine, int limit = kMailProgramLimit);

}  // namespace kova::mail
