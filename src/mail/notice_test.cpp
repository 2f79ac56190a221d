#include "mail/notice.h"

#include <gtest/gtest.h>

#include <ctime>

#include "mail/last_login.h"
#include "platform/os/network_adapter.h"
#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"

namespace kova::mail {
namespace {

using os::FileOutcome;
using os::testing::FakeFiles;
using os::testing::FakeStep;

constexpr std::int64_t kNow = 1709208000999;  // 2024-02-29 12:00:00.999 UTC
constexpr char kAdapter[] = "00-15-5D-0A-1B-2C";
const Notice kNotice{"APP表1", "お知らせ", "本文です\r\n"};

TEST(Notice, BodyLeavesOutWhatIsForOthers) {
  const struct {
    const char* body;
    const char* prepared;
  } cases[] = {
      {"", ""},
      {"a\r\n", "a"},
      {"a\r\n\r\n", "a\r\n"},  // one line end goes, no more
      {"a\n", "a\n"},
      {"a\r\n$_NOAPPLI", "a"},
      {"a\r\n$_NOAPPLI for others", "a"},
      {"a $_NOAPPLI for others\r\nb", "a b"},
      {"$_NOAPPLI\n$_NOAPPLI\nb\r\n$_NOAPPLI\r\n", "b"},
      {"$_NO$_NOAPPLI\nAPPLI x\ny", "y"},  // one that comes together by a removal, too
      {"表$_NOAPPLI表\r\n表", "表表"},
      {"$_noappli", "$_noappli"},
  };
  for (const auto& each : cases) EXPECT_EQ(NoticeBody(each.body), each.prepared) << each.body;
}

TEST(Notice, FileHoldsFourPartsAndKeepsItsLines) {
  EXPECT_EQ(NoticeText(kNotice, kNow), "APP表1\r\n20240229\r\nお知らせ\r\n本文です");
  EXPECT_EQ(NoticeText({"A", "one\r\ntwo", ""}, 0), "A\r\n19700101\r\none  two\r\n");
}

TEST(Notice, NameStaysInItsFolder) {
  const std::string rest = std::string("_") + kAdapter + "_20240229_120000_999";
  const std::string tooLong(300, 'a');
  const struct {
    std::string id;
    std::string inName;
  } cases[] = {
      {"APP表1", "APP表1"},  // ends in the byte of a backslash, which is none
      {"..\\..\\a/b", ".._.._a_b"},
      {"C:*?\"<>|\t\r\nx", "C__________x"},
      {"表", "表"},
      {tooLong, std::string(100, 'a')},
      {std::string(99, 'a') + "表", std::string(99, 'a')},
  };
  for (const auto& each : cases) EXPECT_EQ(NoticeName(each.id, kAdapter, kNow), each.inName + rest);
}

TEST(Notice, OneOfTheSameMillisecondTakesTheNext) {
  FakeFiles files;
  files.folders = {"C:\\out"};
  const std::string stem = std::string("C:\\out\\APP表1_") + kAdapter + "_20240229_1200";
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(WriteNotice(files, "C:\\out\\", kNotice, kAdapter, kNow), FileOutcome::kOk);
  files.contents[stem + "01_002.notice_temp"] = "another's, unfinished";
  EXPECT_EQ(WriteNotice(files, "C:\\out\\", kNotice, kAdapter, kNow), FileOutcome::kOk);
  std::vector<std::string> names;
  for (const auto& [name, content] : files.contents) names.push_back(name);
  EXPECT_EQ(names,
            (std::vector<std::string>{stem + "00_999.notice", stem + "01_000.notice", stem + "01_001.notice",
                                      stem + "01_002.notice_temp", stem + "01_003.notice"}));
  EXPECT_EQ(files.temporaries.front(), stem + "00_999.notice_temp");
}

TEST(Notice, FailureLeavesNothing) {
  const struct {
    FakeStep failing;
    FileOutcome failure;
  } cases[] = {{FakeStep::kWrite, FileOutcome::kFull}, {FakeStep::kMove, FileOutcome::kFailed}};
  for (const auto& each : cases) {
    FakeFiles files;
    files.folders = {"C:\\out"};
    files.failing = each.failing;
    files.failure = each.failure;
    EXPECT_EQ(WriteNotice(files, "C:\\out\\", kNotice, kAdapter, kNow), each.failure);
    EXPECT_TRUE(files.contents.empty());
  }
  FakeFiles nowhere;
  EXPECT_EQ(WriteNotice(nowhere, "C:\\gone\\", kNotice, kAdapter, kNow), FileOutcome::kNotThere);
}

TEST(Notice, ReachesARealFolder) {
  const os::testing::TemporaryFolder folder("notice");
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(WriteNotice(os::RealFiles(), folder.Path(), kNotice, kAdapter, kNow), FileOutcome::kOk);
  std::vector<std::string> names;
  EXPECT_EQ(os::RealFiles().List(folder.Path(), names), FileOutcome::kOk);
  ASSERT_EQ(names.size(), 2u);
  std::string content;
  EXPECT_EQ(os::RealFiles().Read(folder.Path() + names[0], 1000, content), FileOutcome::kOk);
  EXPECT_EQ(content, NoticeText(kNotice, kNow));
  EXPECT_EQ(os::NetworkAdapterAddress().size(), sizeof kAdapter - 1);
}

TEST(Notice, IsForPatientsWithTheApplication) {
  for (const char* id : {"", "++++++++++"}) EXPECT_FALSE(HasApplication(id)) << id;
  for (const char* id : {"+", "+++++++++++", "A"}) EXPECT_TRUE(HasApplication(id)) << id;
}

std::tm At(int year, int month, int day, int hour, int minute, int second) {
  std::tm time{};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

TEST(LastLogin, ShowsDateAndAge) {
  const std::tm now = At(2026, 11, 23, 0, 0, 0);
  const std::tm lastSecond = At(2026, 11, 23, 23, 59, 59);
  const struct {
    const char* stamp;
    std::tm now;
    const char* shown;  // null: no date
  } cases[] = {
      {"", now, ""},
      {"20240101", now, "2024-1-1 00:00:00  (かなり前)"},
      {"20261116093005", lastSecond, "2026-11-16 09:30:05  (最近)"},   // 7 days
      {"20261115235959", now, "2026-11-15 23:59:59  (1週間以上前)"},   // 8
      {"20261023", lastSecond, "2026-10-23 00:00:00  (1週間以上前)"},  // 31
      {"20261022", now, "2026-10-22 00:00:00  (1ヶ月以上前)"},         // 32
      {"20260823", lastSecond, "2026-8-23 00:00:00  (1ヶ月以上前)"},   // 92
      {"20260822", now, "2026-8-22 00:00:00  (3ヶ月以上前)"},          // 93
      {"20260523", lastSecond, "2026-5-23 00:00:00  (3ヶ月以上前)"},   // 184
      {"20260522", now, "2026-5-22 00:00:00  (6ヶ月以上前)"},          // 185
      {"20251123", lastSecond, "2025-11-23 00:00:00  (6ヶ月以上前)"},  // 365
      {"20251122", now, "2025-11-22 00:00:00  (かなり前)"},            // 366
      {"20270101", now, "2027-1-1 00:00:00  (最近)"},
      {"99991231", now, "9999-12-31 00:00:00  (最近)"},
      {"19000101", now, "1900-1-1 00:00:00  (かなり前)"},
      {"20261131", At(2026, 12, 8, 23, 0, 0), "2026-11-31 00:00:00  (最近)"},  // the first of December
      {"20261123ab:\x95", now, "2026-11-23 ab::\x95:00  (最近)"},              // times are texts
      {"2026112312345678901234567890123456789012", now, "2026-11-23 12:34:56  (最近)"},
      {"18991231", now, nullptr},
      {"202", now, nullptr},
      {"20261301", now, nullptr},
      {"20260001", now, nullptr},
      {"20261132", now, nullptr},
      {"2026112", now, "2026-11-20 00:00:00  (最近)"},  // a short one is filled up
      {"2O261123", now, nullptr},
      {"abcdefgh", now, nullptr},
      {"2026-1-1", now, nullptr},
  };
  for (const auto& each : cases) {
    const auto text = LastLoginText(each.stamp, each.now);
    if (each.shown == nullptr)
      EXPECT_EQ(text, std::nullopt) << each.stamp;
    else
      EXPECT_EQ(text, each.shown) << each.stamp;
  }
}

}  // namespace
}  // namespace kova::mail
