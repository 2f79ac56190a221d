#include "mail/mail_programs.h"

#include <initializer_list>
#include <utility>

#include "platform/os/profile_lines.h"

namespace kova::mail {
namespace {

using Parts = std::initializer_list<std::pair<std::string_view, std::string_view>>;

// Values are zero-terminated texts to the programs.
std::string Command(std::string_view program, Parts parts) {
  std::string command(program);
  for (const auto& [key, value] : parts)
    command.append(" /").append(key).append(":").append(os::CutAtNul(value));
  return command;
}

constexpr std::string_view kSendProgram = "Mail\\MailSend.exe";
constexpr std::string_view kDraftProgram = "Mail\\MailDraft.exe";
constexpr std::string_view kReservationProgram = "Option\\MailSendReservation.exe";

}  // namespace

std::string SendMailCommand(const OutgoingMail& mail) {
  return Command(kSendProgram, {{"TO", mail.to},
                                {"SUBJECT", mail.subject},
                                {"BODY", mail.body},
                                {"PATIENTID", mail.patientId},
                                {"STAFFID", mail.staffId}});
}

std::string DraftMailCommand(const OutgoingMail& mail, std::string_view itemId) {
  return Command(kDraftProgram, {{"TO", mail.to},
                                 {"SUBJECT", mail.subject},
                                 {"BODY", mail.body},
                                 {"PATIENTID", mail.patientId},
                                 {"STAFFID", mail.staffId},
                                 {"ITEMID", itemId}});
}

std::string SendEmlFilesCommand(std::string_view path, bool doNotKeep) {
  return Command(kSendProgram, {{"EML", path}}) + (doNotKeep ? " /UNSAVE" : "");
}

std::string SendReservationMailCommand(std::string_view to, std::string_view date) {
  return Command(kReservationProgram, {{"TO", to}, {"DATE", date}});
}

int ExecMail(os::ChildPrograms& programs, std::string_view commandLine, int limit) {
  const os::ChildResult result = programs.Run(commandLine, limit);
  return result.outcome == os::ChildOutcome::kExited && result.exitCode == 0 ? 1 : 0;
}

}  // namespace kova::mail
