#pragma once

// What the mail programs' command lines say. docs/mail-programs.md has the lines. Values stand in them as
// they are, without quotes: they may hold blanks, line breaks, quotation marks and even what looks like a
// key.

#include <optional>
#include <string>
#include <string_view>

namespace kova::companions {

/// The line behind the program's own name, which may stand in quotation marks, and the blanks after it.
std::string_view BehindProgramName(std::string_view commandLine);

/// One mail. Texts are code page 932.
struct MailCommand {
  std::string_view to;
  std::string_view subject;
  std::string_view body;
  std::string_view patientId;
  std::string_view staffId;
  std::string_view itemId;
};

/// "/TO:a /SUBJECT:b /BODY:c /PATIENTID:d /STAFFID:e", with " /ITEMID:f" behind it on request. Subject and
/// body begin at the first key of theirs, so that the body may hold anything; the numbers behind the body
/// begin at the last ones. Nothing when a key is missing. The views are into `line`.
enum class LastKey { kStaffId, kItemId };
std::optional<MailCommand> ParseMailCommand(std::string_view line, LastKey last);

/// "/EML:path", or with " /UNSAVE" behind it.
struct EmlCommand {
  std::string_view path;
  bool doNotKeep = false;
};
std::optional<EmlCommand> ParseEmlCommand(std::string_view line);

/// "/TO:a /DATE:b"; nothing also when the date is not eight digits.
struct DayCommand {
  std::string_view to;
  std::string_view date;
};
std::optional<DayCommand> ParseDayCommand(std::string_view line);

/// True when a file's name fits a pattern: "*" any characters, "?" one; ASCII letters in either case.
bool FitsPattern(std::string_view name, std::string_view pattern);

}  // namespace kova::companions
