#include "mail/reservation_mail.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include "mail/mail_preview.h"
#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/testing/failing_reads.h"

namespace kova::mail {
namespace {

using store::PutText;

const std::tm kNow = [] {
  std::tm now{};
  std::tie(now.tm_year, now.tm_mon, now.tm_mday, now.tm_hour, now.tm_min) = std::tuple(126, 10, 2, 9, 5);
  return now;
}();

TEST(Placeholders, AreReplacedOneAfterTheOther) {
  PlaceholderValues values;
  for (std::size_t i = 0; i < kPlaceholderCount; ++i) values[i] = static_cast<char>('0' + i);
  values[0] = "<$_PID$_PNAME>";  // the name can hold the later words only
  values[8] = "\x95";            // half a character takes nothing with it
  values[9] = "";
  const std::tuple<const char*, std::string> cases[] = {
      {"", ""},
      {"表$_REDATE表", "表3表"},
      {"$_PNAME", "<1$_PNAME>"},
      {"$_PIDS $_PCASE$_PCASE $PCASE", "1S 22 $PCASE"},
      {"$_RETIME $_BREDATE $_DATETIME$_BRETIME", "4 7 5\x95"},
      {"$$_PID$_ $_PI", "$1$_ $_PI"},
      {"[$_NOAPPLI]$_PARENTNAME", "[]6"}};
  for (const auto& [text, filled] : cases) EXPECT_EQ(FillPlaceholders(text, values), filled);
}

// The value of each word, in the order of replacement, with "|" between.
std::string Values(const tagRESERVATION& reservation, const tagPATIENTDB& patient,
                   GuardianFallback fallback = GuardianFallback::kGeneralWord) {
  std::string all;
  for (const std::string& value : ValuesOf(reservation, patient, kNow, fallback)) all += value + "|";
  return all;
}

TEST(ReservationMail, ValuesOfTheWords) {
  tagRESERVATION reservation{};
  tagPATIENTDB patient{};
  EXPECT_EQ(Values(reservation, patient), "||||:|2026/11/02 09:05|保護者||||");
  EXPECT_EQ(Values(reservation, patient, GuardianFallback::kNothing), "||||:|2026/11/02 09:05|||||");
  PutText(patient.otherName, "別名");
  PutText(patient.secondGuardianName, "母");
  PutText(patient.patientCode, "0012");
  PutText(patient.caseNumber, "C-7");
  PutText(reservation.reservationDate, "20261122");
  PutText(reservation.startTime, "093");
  PutText(reservation.earlierDates[0], "20261001");
  PutText(reservation.earlierTimes[0], "0900");
  PutText(reservation.earlierDates[1], "20261008");
  EXPECT_EQ(Values(reservation, patient), "別名|0012|C-7|2026/11/22|09:3|2026/11/02 09:05|母|2026/10/08|||");
  PutText(patient.name, "氏名");
  PutText(patient.guardianName, "父");
  PutText(reservation.earlierTimes[1], "9");
  PutText(reservation.reservationDate, "2026112");
  std::memset(reservation.startTime, '1', sizeof reservation.startTime);
  std::memset(patient.caseNumber, 'x', sizeof patient.caseNumber);
  EXPECT_EQ(Values(reservation, patient),
            "氏名|0012|xxxxxxxxxxx|2026112|11:11|2026/11/02 09:05|父|2026/10/08|9:||");
}

TEST(MailPrograms, CommandLines) {
  const OutgoingMail mail{"a@x,b@x", "件 名", std::string_view("1 \"2\"\r\n表\0後", 13), "", "S1"};
  EXPECT_EQ(SendMailCommand(mail),
            "Mail\\MailSend.exe /TO:a@x,b@x /SUBJECT:件 名 /BODY:1 \"2\"\r\n表 /PATIENTID: /STAFFID:S1");
  EXPECT_EQ(DraftMailCommand({"a", "", "", "", ""}, "7"),
            "Mail\\MailDraft.exe /TO:a /SUBJECT: /BODY: /PATIENTID: /STAFFID: /ITEMID:7");
  EXPECT_EQ(SendEmlFilesCommand("C:\\表\\a b.eml", false), "Mail\\MailSend.exe /EML:C:\\表\\a b.eml");
  EXPECT_EQ(SendEmlFilesCommand("a", true), "Mail\\MailSend.exe /EML:a /UNSAVE");
  EXPECT_EQ(SendReservationMailCommand("a", "20261122"),
            "Option\\MailSendReservation.exe /TO:a /DATE:20261122");
}

TEST(TemplateRoles, TheStoredChoice) {
  const std::tuple<const char*, int, const char*> cases[] = {
      {"", -1, ""},
      {"", 0, "0001"},
      {"", 1, "0001"},
      {"", 5, "0001"},
      {"TrearmentCompTemplate=12", 3, "12"},
      {"ComeTemplate=", 2, ""},
      {"ReservationTemplate=0003\nReservationConfirmTemplate=xxxx", 5, "0003"},
      {"ReservationTemplate=0003\nReservationConfirmTemplate=", 5, ""},
      {"ReservationConfirmTemplate=0004", 5, "0004"}};
  for (const auto& [ini, mode, chosen] : cases) {
    const foundation::SettingsSnapshot settings("[EMail]\n" + std::string(ini));
    ASSERT_TRUE(IsTemplateRole(mode));
    EXPECT_EQ(ChosenTemplate(settings, TemplateRole{mode}), chosen) << ini << mode;
  }
  EXPECT_FALSE(IsTemplateRole(-2) || IsTemplateRole(6));
}

struct Programs final : os::ChildPrograms {
  os::ChildResult Run(std::string_view commandLine, int) override {
    line = commandLine;
    return result;
  }
  std::string line;
  os::ChildResult result{os::ChildOutcome::kExited, 0};
};

struct Prompts final : foundation::Prompts {
  bool AskYesNo(std::string_view text) override {
    asked = text;
    return yes;
  }
  void Inform(std::string_view text) override { ADD_FAILURE() << text; }
  std::string asked;
  bool yes = false;
};

// Patients: 1 has a third address only, 2 three of them, 3 no permission, 4 no second half, 5 no address.
class SendRoleMailTest : public ::testing::Test {
 protected:
  SendRoleMailTest() {
    EXPECT_EQ(KovaCreateDatabase(folder.Path().c_str()), 0);
    EXPECT_EQ(db.OpenDB(folder.Path().c_str()), 0);
    Put("1", {"", "", "c@x"}, 1);
    Put("2", {"a@x", "b@x", "c@x"}, 1);
    Put("3", {"a@x", "", ""}, 0);
    Put("4", {"a@x", "", ""}, std::nullopt);
    Put("5", {"", "", ""}, 1);
    for (const int number : {6, 7, 8})
      EXPECT_EQ(templates.Write(number, {"", "$_PNAME", "$_PARENTNAME." + std::to_string(number)}),
                os::FileOutcome::kOk);
  }

  void Put(const char* code, const std::array<const char*, 3>& addresses, std::optional<int> permission) {
    CPatientDB patient(nullptr, 0);
    CPatientDB2 contact(nullptr, 0);
    EXPECT_TRUE(patient.SetAssociatedDB(&db) == 0 && contact.SetAssociatedDB(&db) == 0);
    PutText(patient.record.patientCode, code);
    PutText(patient.record.name, "表");
    PutText(contact.record.patientCode, code);
    PutText(contact.record.mailAddress1, addresses[0]);
    PutText(contact.record.mailAddress2, addresses[1]);
    PutText(contact.record.mailAddress3, addresses[2]);
    contact.record.mailPermission = permission.value_or(0);
    EXPECT_TRUE(patient.Insert() == 0 && (!permission || contact.Insert() == 0));
  }

  int Send(TemplateRole role, const std::string& ini, const char* patient) {
    const foundation::SettingsSnapshot settings(ini);
    tagRESERVATION reservation{};
    PutText(reservation.patientCode, patient);
    PutText(reservation.staffId, "S1");
    programs.line.clear();
    prompts.asked.clear();
    return SendRoleMail({settings, templates, programs, prompts, kNow}, role, &db, reservation);
  }

  os::testing::TemporaryFolder folder{"mails"};
  CKovaDBSys db;
  os::testing::FakeFiles files;
  TemplateStore templates{files, "T"};
  Programs programs;
  Prompts prompts;
};

TEST_F(SendRoleMailTest, WhoGetsWhat) {
  // Role, settings, patient, what is sent; empty: nothing.
  const std::tuple<int, const char*, const char*, const char*> cases[] = {
      {2, "", "1", "Mail\\MailSend.exe /TO:c@x /SUBJECT:表 /BODY:保護者.6 /PATIENTID:1 /STAFFID:S1"},
      {3, "", "2", "Mail\\MailSend.exe /TO:a@x,b@x,c@x /SUBJECT:表 /BODY:.7 /PATIENTID:2 /STAFFID:S1"},
      {4, "", "1", "Mail\\MailSend.exe /TO:c@x /SUBJECT:表 /BODY:保護者.8 /PATIENTID:1 /STAFFID:S1"},
      {4, "[EMail]\nCONTACT=1", "1",
       "Mail\\MailDraft.exe /TO:c@x /SUBJECT:表 /BODY:保護者.8 /PATIENTID:1 /STAFFID:S1 /ITEMID:"},
      {4, "[EMail]\nCONTACT=2", "1", ""},
      {2, "[EMail]\nComeTemplate=", "1", ""},
      {2, "[EMail]\nComeTemplate=5", "1", ""},
      {2, "", "3", ""},
      {2, "", "4", ""},
      {2, "", "5", ""},
      {2, "", "9", ""},
      {0, "[EMail]\nReservationTemplate=6", "1", ""},
      {2, "[GLOBAL]\nWatchConfirm=1", "1", ""},
  };
  for (const auto& [role, ini, patient, line] : cases) {
    EXPECT_EQ(Send(TemplateRole{role}, ini, patient), line[0] == '\0' ? 0 : 1) << ini << patient;
    EXPECT_EQ(programs.line, line) << ini << patient;
  }
}

TEST_F(SendRoleMailTest, AsksWithTheAddressesAndFillsWithoutSending) {
  prompts.yes = true;
  programs.result.exitCode = 3;
  EXPECT_EQ(Send(TemplateRole::kChangeConfirm, "[GLOBAL]\nWatchConfirm=1", "2"), 0);
  EXPECT_EQ(prompts.asked,
            "以下のアドレスに予約変更の確認のメールを送信します。よろしいですか?\n\na@x\nb@x\nc@x");
  EXPECT_FALSE(programs.line.empty());

  FilledMail filled;
  tagRESERVATION reservation{};
  const auto fill = [&](const char* patient, int number) {
    PutText(reservation.patientCode, patient);
    return FillForReservation(templates, number, &db, reservation, kNow, GuardianFallback::kGeneralWord, filled);
  };
  EXPECT_EQ(fill("4", 6), FillOutcome::kNothing);
  EXPECT_EQ(fill("3", 5), FillOutcome::kNothing);
  EXPECT_EQ(filled.body, "");
  EXPECT_EQ(fill("3", 6), FillOutcome::kFilled);  // allows no mail
  EXPECT_EQ(filled.to + "|" + filled.subject + "|" + filled.body, "|表|保護者.6");
  files.contents.at("T\\0008.$mt") = "\x01";
  EXPECT_EQ(fill("3", 8), FillOutcome::kUnreadable);
  store::testing::FailReads(db, "patient2");
  EXPECT_EQ(fill("3", 6), FillOutcome::kUnreadable);
}

template <typename Table, typename Record>
void Insert(CKovaDBSys& db, const Record& record) {
  store::On<Table> table(db);
  table.record = record;
  ASSERT_EQ(table.Insert(), 0);
}

TEST(MailPreview, ListsTheDayAndSaysWhatCannotBeRead) {
  const os::testing::TemporaryFolder folder("mail_preview");
  ASSERT_EQ(KovaCreateDatabase(folder.Path().c_str()), 0);
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  tagPATIENTDB named{}, nameless{};
  PutText(named.patientCode, "P1");
  PutText(named.name, "表 花子");
  PutText(named.otherName, "別名");
  PutText(nameless.patientCode, "P2");
  PutText(nameless.otherName, "山田");
  Insert<CPatientDB>(db, named);
  Insert<CPatientDB>(db, nameless);
  tagPATIENTDB2 contact{};
  PutText(contact.patientCode, "P2");
  PutText(contact.mailAddress1, "yamada@example.jp");
  contact.mailPermission = 1;
  Insert<CPatientDB2>(db, contact);
  const std::tuple<const char*, const char*, const char*, int> rows[] = {
      {"20261124", "1100", "P1", 1}, {"20261124", "0900", "P2", 0}, {"20261124", "1000", "P3", 0},
      {"20261124", "0930", "P1", 2}, {"20261125", "0800", "P1", 0}, {"20261123", "2000", "P1", 0}};
  int number = 0;
  for (const auto& [date, time, patient, status] : rows) {
    tagRESERVATION reservation{};
    PutText(reservation.reservationNumber, std::to_string(++number));
    PutText(reservation.reservationDate, date);
    PutText(reservation.startTime, time);
    PutText(reservation.patientCode, patient);
    reservation.status = static_cast<std::uint8_t>(status);
    Insert<CReservationDB>(db, reservation);
  }
  std::vector<PreviewRow> day;
  ASSERT_EQ(ReservationsOfDay(&db, "20261124", day), 0);
  std::string listed;
  for (const PreviewRow& row : day) listed += std::string(row.reservation.startTime) + row.patientName + " ";
  EXPECT_EQ(listed, "0900山田 1000 1100表 花子 ");

  MailTemplate text;
  text.body = "$_PNAME";
  FilledMail mail;
  ASSERT_EQ(PreviewFor(text, TemplateRole::kCome, &db, day.at(0).reservation, kNow, mail), 0);
  EXPECT_EQ(mail.to + " " + mail.body, "yamada@example.jp 山田");
  ASSERT_EQ(PreviewFor(text, TemplateRole::kCome, &db, day.at(1).reservation, kNow, mail), 0);
  EXPECT_EQ(mail.to + mail.body, "");  // a patient who is not there

  const tagRESERVATION shown = day.at(0).reservation;
  const std::tuple<const char*, int, int> failing[] = {{"reservation", 7, 0}, {"patient", 7, 7}, {"patient2", 0, 7}};
  for (const auto& [table, ofDay, ofMail] : failing) {
    CKovaDBSys other;
    ASSERT_EQ(other.OpenDB(folder.Path().c_str()), 0);
    store::testing::FailReads(other, table);
    EXPECT_EQ(ReservationsOfDay(&other, "20261124", day), ofDay) << table;
    EXPECT_EQ(day.empty(), ofDay != 0) << table;
    EXPECT_EQ(PreviewFor(text, TemplateRole::kCome, &other, shown, kNow, mail), ofMail) << table;
    EXPECT_EQ(mail.to.empty(), ofMail != 0) << table;
  }
}

}  // namespace
}  // namespace kova::mail
