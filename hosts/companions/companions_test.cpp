#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "hosts/companions/command_line.h"
#include "hosts/companions/mail_message.h"
#include "hosts/companions/message_files.h"
#include "hosts/companions/message_reader.h"
#include "platform/text932/cp932.h"

namespace kova::companions {
namespace {

TEST(CommandLine, SplitsAtTheKeysThatCount) {
  const struct {
    std::string line;
    std::string parts;  // "to|subject|body|patient|staff"; "-" when the line is none
  } rows[] = {
      {"/TO:a@b /SUBJECT:s t /BODY:c /PATIENTID:7 /STAFFID:3", "a@b|s t|c|7|3"},
      {"/TO: /SUBJECT: /BODY: /PATIENTID: /STAFFID:", "||||"},
      {"/TO:a /SUBJECT:\"q\" /BODY:x\r\n y /BODY:z /STAFFID:1 /PATIENTID:2 /STAFFID:3\n /PATIENTID:7 "
       "/STAFFID:4",
       "a|\"q\"|x\r\n y /BODY:z /STAFFID:1 /PATIENTID:2 /STAFFID:3\n|7|4"},
      {"/TO:a /SUBJECT:ソ /BODY:表/BODY: /PATIENTID:7 /STAFFID:", "a|ソ|表/BODY:|7|"},
      {"/TO:a /SUBJECT:s・/BODY:b・/PATIENTID:7 /STAFFID:3",
       "a|s・|b・|7|3"},  // half a character took the blank
      {"/SUBJECT:s /BODY:b /PATIENTID:7 /STAFFID:3", "-"},
      {"/TO:a /BODY:b /SUBJECT:s /PATIENTID:7 /STAFFID:3", "-"},
      {"/TO:a /SUBJECT:s /BODY:b /STAFFID:3 /PATIENTID:7", "-"},
      {"", "-"},
  };
  const auto join = [](const MailCommand& mail) {
    std::string all;
    for (const std::string_view part : {mail.to, mail.subject, mail.body, mail.patientId, mail.staffId})
      all.append("|").append(part);
    return all.substr(1);
  };
  for (const auto& row : rows) {
    const auto mail = ParseMailCommand(row.line, LastKey::kStaffId);
    EXPECT_EQ(mail ? join(*mail) : "-", row.parts) << row.line;
    const std::string line = row.line + " /ITEMID:i /ITEMID:9";
    const auto draft = ParseMailCommand(line, LastKey::kItemId);
    ASSERT_EQ(draft.has_value(), mail.has_value()) << row.line;
    if (!draft) continue;
    EXPECT_EQ(draft->itemId, "9");
    EXPECT_EQ(draft->staffId, std::string(mail->staffId) + " /ITEMID:i");
  }
}

TEST(CommandLine, MailFilesDaysNamesAndPatterns) {
  EXPECT_EQ(ParseEmlCommand("/EML:C:\\a b\\表.eml")->path, "C:\\a b\\表.eml");
  EXPECT_FALSE(ParseEmlCommand("/EML:x /UNSAVE ")->doNotKeep);
  EXPECT_TRUE(ParseEmlCommand("/EML:x y /UNSAVE")->doNotKeep);
  EXPECT_EQ(ParseEmlCommand("/EML:x y /UNSAVE")->path, "x y");
  EXPECT_FALSE(ParseEmlCommand("/TO:x").has_value());

  EXPECT_EQ(ParseDayCommand("/TO: /DATE:20240401")->date, "20240401");
  EXPECT_EQ(ParseDayCommand("/TO:a@b,c@d /DATE:20240401")->to, "a@b,c@d");
  for (const char* line : {"/TO:a /DATE:2024/04/01", "/TO:a /DATE:", "/DATE:20240401", "/TO:a"})
    EXPECT_FALSE(ParseDayCommand(line).has_value()) << line;

  EXPECT_EQ(BehindProgramName("Mail\\MailSend.exe  /TO:\"a\" "), "/TO:\"a\" ");
  EXPECT_EQ(BehindProgramName("\"C:\\Program Files\\x.exe\" /TO:a"), "/TO:a");
  EXPECT_EQ(BehindProgramName("x.exe"), "");

  EXPECT_TRUE(FitsPattern("表.EML", "*.eml"));
  EXPECT_TRUE(FitsPattern("a表b", "?表*"));
  EXPECT_FALSE(FitsPattern("a.eml.bak", "*.eml"));
  EXPECT_FALSE(FitsPattern("表", "??"));
}

MailMessage Example() {
  MailMessage message;
  message.senderAddress = "p@example.jp";
  message.to = {"a@b", "c@d"};
  message.subject = "Hello";
  message.body = "a\nb";
  message.fields = {{"X-Patient-ID", "7"}, {"X-Staff-ID", ""}};
  message.date.tm_year = 124;
  message.date.tm_mon = 1;
  message.date.tm_mday = 9;
  message.date.tm_wday = 5;
  message.date.tm_hour = 8;
  message.minutesFromUtc = 540;
  message.id = "m1";
  return message;
}

TEST(Message, IsTheOneThatMailProgramsRead) {
  EXPECT_EQ(
      WriteMessage(Example()),
      "From: <p@example.jp>\r\nTo: a@b,\r\n c@d\r\nDate: Fri, 09 Feb 2024 08:00:00 +0900\r\n"
      "Message-ID: <m1@example.jp>\r\nSubject: Hello\r\nX-Patient-ID: 7\r\nMIME-Version: 1.0\r\n"
      "Content-Type: text/plain; charset=UTF-8\r\nContent-Transfer-Encoding: base64\r\n\r\nYQ0KYg==\r\n");
  MailMessage message = Example();
  message.senderName = "表";
  message.subject = "予約";
  message.minutesFromUtc = -210;
  const std::string text = WriteMessage(message);
  EXPECT_TRUE(text.starts_with("From: =?UTF-8?B?6KGo?=\r\n <p@example.jp>\r\n")) << text;
  EXPECT_NE(text.find("Subject: =?UTF-8?B?5LqI57SE?=\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find(" -0330\r\n"), std::string::npos) << text;
}

TEST(Message, KeepsEveryTextOnLegalLines) {
  const std::string replacement = "\xEF\xBF\xBD";
  const struct {
    std::string text, subject, body;  // the latter in UTF-8, as read
  } rows[] = {
      {"a\r\nBcc: x@y\n\tz", "a  Bcc: x@y  z", "a\nBcc: x@y\n\tz"},
      {"=?UTF-8?B?QQ==?=", "=?UTF-8?B?QQ==?=", "=?UTF-8?B?QQ==?="},
      {" two  blanks ", " two  blanks ", " two  blanks "},
      {"half \x83", "half " + replacement, "half " + replacement},
      {"\x81\xAD x\r\ry", replacement + " x  y", replacement + " x\n\ny"},  // a pair that is not defined
      {std::string(500, 'x'), std::string(500, 'x'), std::string(500, 'x')},
  };
  for (const auto& row : rows) {
    MailMessage message = Example();
    message.subject = message.fields.front().second = row.text;
    message.senderName = row.text;
    message.body = row.text;
    const std::string text = WriteMessage(message);
    const ReadableMail mail = ReadMessage(text);
    EXPECT_EQ(mail.Field("Subject"), row.subject);
    EXPECT_EQ(mail.Field("X-Patient-ID"), row.subject);
    EXPECT_EQ(mail.Field("From"), row.subject + " <p@example.jp>");
    EXPECT_EQ(mail.Field("Bcc"), "");
    EXPECT_EQ(mail.body, row.body);
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = text.find("\r\n", at);
      EXPECT_LE(end - at, 76u) << text.substr(at, end - at);
      EXPECT_EQ(text.substr(at, end - at).find_first_of("\r\n"), std::string::npos);
      at = end + 2;
    }
  }
}

// Each word must be whole by itself: readers decode them one by one.
TEST(Message, NoEncodedWordCutsACharacter) {
  for (std::size_t lead = 0; lead < 4; ++lead) {
    MailMessage message = Example();
    message.subject = std::string(lead, 'a');
    for (int i = 0; i < 60; ++i) message.subject += i % 7 == 0 ? "ｱ" : "表";
    const std::string text = WriteMessage(message);
    for (std::size_t at = 0; (at = text.find("=?UTF-8?B?", at)) != std::string::npos; ++at) {
      const std::size_t end = text.find("?=", at) + 2;
      EXPECT_LE(end - at, 75u);
      const ReadableMail word = ReadMessage("S: " + text.substr(at, end - at) + "\r\n");
      std::string known;
      EXPECT_TRUE(text932::FromUtf8(word.Field("S"), known)) << word.Field("S");
    }
    EXPECT_EQ(ReadMessage(text).Field("Subject"), text932::ToUtf8(message.subject));
  }
}

TEST(Addresses, TakesPlainOnesOnly) {
  EXPECT_EQ(ReadAddresses(" a@b ,,\tc.d+e@f-g.jp,").usable,
            (std::vector<std::string>{"a@b", "c.d+e@f-g.jp"}));
  for (const char* bad :
       {"a", "a@", "@b", "a@b@c", "a b@c", "a@b\r\nBcc:c@d", "<a@b>", "名@b", "a@b;c@d", "\"a\"@b"}) {
    EXPECT_EQ(ReadAddresses(bad).usable.size(), 0u) << bad;
    EXPECT_EQ(ReadAddresses(bad).refused.size(), 1u) << bad;
  }
}

TEST(MessageFiles, AMailHasAHeadAndSomebodyItGoesTo) {
  for (const char* mail : {"TO: a@b\r\nSubject: x\r\n\r\nbody: ", "From: x\nCc: a\n folded\n\nb", "Bcc:a@b"})
    EXPECT_TRUE(IsMessage(mail)) << mail;
  for (const char* none :
       {"", "Subject: x\r\n\r\nTo: a@b", "hello", "To: a\r\nno field\r\n\r\n", " To: a", "T o: a"})
    EXPECT_FALSE(IsMessage(none)) << none;
}

}  // namespace
}  // namespace kova::companions
