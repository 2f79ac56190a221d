#include "practice/daily_backup.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"

namespace kova::practice {
namespace {

std::tm At(int day, int hour, int minute) {
  std::tm time{};
  time.tm_year = 126;
  time.tm_mon = 10;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  return time;
}

class DailyBackup : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(KovaCreateDatabase(folder.c_str()), 0);
    std::filesystem::create_directories(backups());
  }
  std::filesystem::path backups() const { return root.Native() / "backups"; }
  int Make(const std::tm& now) { return MakeDailyBackup(files, folder, to, now, problem); }
  int Count() const {
    int count = 0;
    for (const auto& each : std::filesystem::directory_iterator(backups())) count += each.is_directory() ? 1 : 0;
    return count;
  }

  os::testing::TemporaryFolder root{"daily"};
  os::Files& files = os::RealFiles();
  std::string folder = root.Path() + "practice\\", to = root.Path() + "backups\\", problem;
};

TEST_F(DailyBackup, IsMadeOnceADayAndTriedAgainWhereItFails) {
  EXPECT_EQ(Make(At(24, 9, 0)), 0) << problem;
  EXPECT_EQ(Make(At(24, 9, 1)), 0);
  EXPECT_EQ(Count(), 1);
  EXPECT_EQ(BackupComplaint(files, folder, to, At(24, 9, 2)), "");
  std::filesystem::rename(backups(), root.Native() / "away");
  EXPECT_EQ(Make(At(25, 9, 0)), 12);
  EXPECT_NE(problem, "");
  EXPECT_FALSE(std::filesystem::exists(backups())) << "a disk that is not there is not made";
  EXPECT_NE(BackupComplaint(files, folder, to, At(25, 9, 2)).find("結果番号 12"), std::string::npos);
  EXPECT_NE(BackupComplaint(files, folder, to, At(25, 9, 2)).find(to), std::string::npos);
  EXPECT_EQ(BackupComplaint(files, folder, to, At(26, 8, 0)), "") << "yesterday's";
  std::filesystem::rename(root.Native() / "away", backups());
  EXPECT_FALSE(IsBackupDue(files, folder, At(25, 9, 59)));
  EXPECT_TRUE(IsBackupDue(files, folder, At(25, 10, 0)));
  EXPECT_EQ(Make(At(25, 9, 59)), 0);
  EXPECT_EQ(Count(), 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));  // backups are named by the second
  EXPECT_EQ(Make(At(25, 10, 0)), 0) << problem;
  EXPECT_EQ(Count(), 2);
  EXPECT_EQ(BackupComplaint(files, folder, to, At(25, 10, 1)), "");
}

TEST_F(DailyBackup, KeepsTheLastFourteenAndWhateverIsNotItsOwn) {
  for (int day = 1; day <= 16; ++day) {
    char name[40];
    std::snprintf(name, sizeof name, "kova-202501%02d-090000", day);
    std::filesystem::create_directories(backups() / name);
    if (day == 2) continue;
    ASSERT_EQ(files.Create(to + name + "\\INDEXCONTROL.BTR", ""), os::FileOutcome::kOk);
  }
  for (const char* name : {"kova-20261123-090000.part", "kova-20261124-090000.part", "kova-20240101-09000", "Kova-20240101-090000", "kova-20240101_090000", "photos"})
    std::filesystem::create_directories(backups() / name);
  EXPECT_EQ(Make(At(24, 9, 0)), 0) << problem;
  EXPECT_EQ(Count(), 5 + 1 + 14);
  EXPECT_TRUE(std::filesystem::exists(backups() / "kova-20261124-090000.part")) << "somebody may be at it";
  EXPECT_TRUE(std::filesystem::exists(backups() / "kova-20250102-090000")) << "no whole backup: not its own";
  EXPECT_FALSE(std::filesystem::exists(backups() / "kova-20250103-090000"));
  EXPECT_TRUE(std::filesystem::exists(backups() / "kova-20250104-090000"));
}

TEST_F(DailyBackup, OfTwoProgramsOneMakesIt) {
  int results[2] = {-1, -1};
  std::string problems[2];
  const auto make = [&](int i) { results[i] = MakeDailyBackup(os::RealFiles(), folder, to, At(24, 9, 0), problems[i]); };
  std::thread other(make, 1);
  make(0);
  other.join();
  EXPECT_EQ(results[0] + results[1], 0) << problems[0] << problems[1];
  EXPECT_EQ(Count(), 1);
}

}  // namespace
}  // namespace kova::practice
