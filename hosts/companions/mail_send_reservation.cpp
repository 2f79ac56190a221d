// MailSendReservation: files the reservation mails of one day in the outbox.

#include <afx.h>

#include <algorithm>
#include <string>
#include <vector>

#include "entry/kova_sub_tools.h"
#include "hosts/companions/companion.h"
#include "hosts/companions/mail_message.h"
#include "hosts/console/practice.h"
#include "platform/os/program.h"
#include "platform/text932/cp932.h"
#include "records/reservations.h"

namespace kova::companions {
namespace {

using store::GetText;

void Check(int result, const char* what) {
  if (result != 0) throw CompanionError(std::string(what) + ": result " + hosts::DescribeResult(result));
}

/// Of the addresses `all` those that are also in `wanted`; all of them when nothing is wanted.
std::string Limited(const std::string& all, const std::vector<std::string>& wanted) {
  if (wanted.empty()) return all;
  std::string limited;
  for (const std::string& address : ReadAddresses(all).usable) {
    if (std::find(wanted.begin(), wanted.end(), address) == wanted.end()) continue;
    limited.append(limited.empty() ? "" : ",").append(address);
  }
  return limited;
}

Sender SenderOfPractice() {
  const CString address = CKovaSubTools::GetGlobalSettingString("EMail", "EmailAddress", "");
  const Addresses addresses = ReadAddresses(address.GetString());
  if (addresses.usable.size() != 1 || !addresses.refused.empty()) return ReadSender();
  return {CKovaSubTools::GetGlobalSettingString("EMail", "Sender", "").GetString(), addresses.usable.front()};
}

/// False when the mail should have been kept and was not; what was wrong has then been said.
bool KeepReservationMail(CKovaDBSys& db, int number, const tagRESERVATION& reservation,
                         const std::vector<std::string>& wanted, const Sender& sender,
                         const std::string& outbox) {
  CString all, subject, body;
  const std::string patient = text932::ToUtf8(GetText(reservation.patientCode));
  const int filled = CKovaSubTools::FillReservationTemplate(&db, number, reservation, all, subject, body);
  // A reservation whose patient is not there, or allows no mail, needs none.
  if (filled == 0) return true;
  if (filled != 1) {
    std::fprintf(stderr, "patient %s: the template or the patient cannot be read\n", patient.c_str());
    return false;
  }
  const std::string to = Limited(all.GetString(), wanted);
  if (to.empty()) return true;
  const MailCommand mail = {to,
                            {subject.GetString(), static_cast<std::size_t>(subject.GetLength())},
                            {body.GetString(), static_cast<std::size_t>(body.GetLength())},
                            GetText(reservation.patientCode),
                            GetText(reservation.staffId),
                            {}};
  try {
    KeepMail(mail, sender, outbox);
    return true;
  } catch (const CompanionError& error) {
    std::fprintf(stderr, "patient %s: %s\n", patient.c_str(), error.what());
    return false;
  }
}

int TemplateNumber() {
  CString name, subject, body;
  const int number =
      atoi(CKovaSubTools::GetGlobalSettingString("EMail", "ReservationTemplate", "0001").GetString());
  if (CKovaSubTools::GetReservationTemplate(number, name, subject, body) != 0)
    throw CompanionError("there is no reservation template number " + std::to_string(number));
  return number;
}

void Main(std::string_view line) {
  const auto day = ParseDayCommand(line);
  if (!day) throw CommandLineError("MailSendReservation /TO:addresses /DATE:YYYYMMDD");
  hosts::Practice practice;
  const std::string profile = EnvironmentText("KOVA_APP_PROFILE");
  practice.UseProfile(
      text932::ToUtf8(profile.empty() ? os::ProgramFolder() + "MailSendReservation.ini" : profile));
  CKovaDBSys& db = practice.Database();
  const int number = TemplateNumber();
  const std::vector<std::string> wanted = ReadAddresses(day->to).usable;
  const std::string outbox = MailFolder("KOVA_OUTBOX", "outbox");
  const Sender sender = SenderOfPractice();
  int failed = 0;
  std::vector<tagRESERVATION> reservations;
  Check(records::ReadReservationsOfDay(&db, day->date, reservations), "the reservations");
  for (const tagRESERVATION& reservation : reservations)
    failed += KeepReservationMail(db, number, reservation, wanted, sender, outbox) ? 0 : 1;
  if (failed != 0) throw CompanionError(std::to_string(failed) + " mails could not be filed");
}

}  // namespace
}  // namespace kova::companions

int main(int argc, char** argv) {
  return kova::companions::RunCompanion("MailSendReservation", argc, argv, kova::companions::Main);
}
