// MailSend: takes one mail, or finished mail files, and files them in the outbox.

#include <string>
#include <utility>
#include <vector>

#include "hosts/companions/companion.h"
#include "hosts/companions/message_files.h"

namespace kova::companions {
namespace {

std::string Outbox() { return MailFolder("KOVA_OUTBOX", "outbox"); }

void Main(std::string_view line) {
  if (const auto files = ParseEmlCommand(line)) return KeepMessageFiles(*files, Outbox());
  const auto mail = ParseMailCommand(line, LastKey::kStaffId);
  if (!mail) {
    throw CommandLineError(
        "MailSend /TO:addresses /SUBJECT:text /BODY:text /PATIENTID:number /STAFFID:number, or MailSend "
        "/EML:file");
  }
  KeepMail(*mail, ReadSender(), Outbox());
}

}  // namespace
}  // namespace kova::companions

int main(int argc, char** argv) {
  return kova::companions::RunCompanion("MailSend", argc, argv, kova::companions::Main);
}
