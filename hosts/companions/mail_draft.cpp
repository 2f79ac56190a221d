// MailDraft: keeps a mail as a draft for the staff to finish.

#include <string>

#include "hosts/companions/companion.h"

namespace kova::companions {
namespace {

void Main(std::string_view line) {
  const auto mail = ParseMailCommand(line, LastKey::kItemId);
  if (!mail) {
    throw CommandLineError(
        "MailDraft /TO:addresses /SUBJECT:text /BODY:text /PATIENTID:number /STAFFID:number /ITEMID:number");
  }
  // Mail programs open a message with the first field for writing.
  KeepMail(*mail, ReadSender(), MailFolder("KOVA_DRAFTS", "drafts"),
           {{"X-Unsent", "1"}, {"X-Item-ID", std::string(mail->itemId)}});
}

}  // namespace
}  // namespace kova::companions

int main(int argc, char** argv) {
  return kova::companions::RunCompanion("MailDraft", argc, argv, kova::companions::Main);
}
