#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "hosts/companions/message_reader.h"
#include "platform/os/child_programs.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/os/program.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/text932/cp932.h"
#include "tests/child_process.h"

namespace kova {
namespace {

using companions::ReadableMail;
using companions::ReadMessage;
using testing::SetVariable;

// The real programs, started as the library starts them.
class MailPrograms : public ::testing::Test {
 protected:
  MailPrograms() {
    SetVariable("KOVA_OUTBOX", outbox.Native());
    SetVariable("KOVA_DRAFTS", drafts.Native() / "new");
  }
  static std::string Program(const std::string& name) {
#ifdef _WIN32
    return os::ProgramFolder() + "Mail\\" + name;
#else
    return os::JoinPath(os::ParentFolderOf(os::ProgramFolder()), "bin\\Mail\\" + name);
#endif
  }
  int Run(const std::string& line) {
    const os::ChildResult result = os::RealChildPrograms().Run(Program(line), 60000);
    EXPECT_EQ(result.outcome, os::ChildOutcome::kExited) << line;
    return static_cast<int>(result.exitCode);
  }
  static std::vector<std::string> Mails(const std::string& folder) {
    std::vector<std::string> names, contents;
    (void)os::RealFiles().List(folder, names);
    for (const std::string& name : names) {
      if (!name.ends_with(".eml")) continue;
      EXPECT_EQ(os::RealFiles().Read(folder + name, 1 << 20, contents.emplace_back()), os::FileOutcome::kOk);
    }
    return contents;
  }

  os::testing::TemporaryFolder outbox{"outbox"};
  os::testing::TemporaryFolder drafts{"drafts"};
};

TEST_F(MailPrograms, KeepEachMailTheyAreGiven) {
  const std::string mail =
      " /TO:a@b, c@d /SUBJECT:表 \"%s\" /BODY:来院\r\nソ /STAFFID:x /PATIENTID:7/..\\8 /STAFFID:3";
  EXPECT_EQ(Run("MailSend.exe" + mail), 0);
  EXPECT_EQ(Run("MailSend.exe" + mail), 0);
  ASSERT_EQ(Mails(outbox.Path()).size(), 2u);
  const ReadableMail sent = ReadMessage(Mails(outbox.Path())[0]);
  EXPECT_EQ(sent.Field("To"), "a@b, c@d");
  EXPECT_EQ(sent.Field("Subject"), text932::ToUtf8("表 \"%s\""));
  EXPECT_EQ(sent.Field("X-Patient-ID"), "7/..\\8");
  EXPECT_EQ(sent.body, text932::ToUtf8("来院\nソ /STAFFID:x"));
  EXPECT_NE(sent.Field("Message-ID"), ReadMessage(Mails(outbox.Path())[1]).Field("Message-ID"));

  EXPECT_EQ(Run("MailDraft.exe" + mail + " /ITEMID:5"), 0);
  ASSERT_EQ(Mails(drafts.Path() + "new\\").size(), 1u);
  const ReadableMail draft = ReadMessage(Mails(drafts.Path() + "new\\")[0]);
  EXPECT_EQ(draft.Field("X-Unsent"), "1");
  EXPECT_EQ(draft.Field("X-Item-ID"), "5");
}

TEST_F(MailPrograms, FailWithoutKeepingAnything) {
  const std::string rest = " /SUBJECT:s /BODY:b /PATIENTID:7 /STAFFID:3";
  EXPECT_EQ(Run("MailSend.exe /TO:" + rest), 1);
  EXPECT_EQ(Run("MailSend.exe /TO:a@b,c d@e" + rest), 1);
  EXPECT_EQ(Run("MailSend.exe /TO:a@b"), 2);
  EXPECT_EQ(Run("MailDraft.exe /TO:a@b" + rest), 2);
  EXPECT_EQ(Run("MailSend.exe /EML:" + drafts.Path() + "none.eml"), 1);
  SetVariable("KOVA_OUTBOX", outbox.Native() / "file" / "below");
  EXPECT_EQ(os::RealFiles().Replace(outbox.Path() + "file", "x"), os::FileOutcome::kOk);
  EXPECT_EQ(Run("MailSend.exe /TO:a@b" + rest), 1);
  EXPECT_EQ(Mails(outbox.Path()).size(), 0u);
}

TEST_F(MailPrograms, FileFinishedMails) {
  os::Files& files = os::RealFiles();
  const std::string one = drafts.Path() + "ソ 1.eml";
  ASSERT_EQ(files.Replace(one, "To: a@b\r\n\r\none"), os::FileOutcome::kOk);
  ASSERT_EQ(files.Replace(drafts.Path() + "2.EML", "To: c@d\r\n\r\ntwo"), os::FileOutcome::kOk);
  EXPECT_EQ(Run("MailSend.exe /EML:" + one), 0);
  EXPECT_EQ(files.Kind(one), os::PathKind::kFile);
  EXPECT_EQ(Mails(outbox.Path()), std::vector<std::string>{"To: a@b\r\n\r\none"});

  ASSERT_EQ(files.Replace(drafts.Path() + "3.eml", "no mail"), os::FileOutcome::kOk);
  EXPECT_EQ(Run("MailSend.exe /EML:" + drafts.Path() + "*.eml /UNSAVE"), 1);
  EXPECT_EQ(Mails(outbox.Path()).size(), 1u);
  ASSERT_EQ(files.Delete(drafts.Path() + "3.eml"), os::FileOutcome::kOk);
  EXPECT_EQ(Run("MailSend.exe /EML:" + drafts.Path() + " /UNSAVE"), 0);
  EXPECT_EQ(Mails(outbox.Path()).size(), 3u);
  EXPECT_EQ(files.Kind(one), os::PathKind::kNothing);
}

}  // namespace
}  // namespace kova
