// Several processes at one settings file: this program starts itself as the writers.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/settings.h"
#include "foundation/settings_store.h"
#include "platform/os/clock.h"
#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"
#include "tests/child_process.h"

namespace kova {
namespace {

using foundation::SettingsSnapshot;
using foundation::SettingsStore;

#ifdef _WIN32
constexpr int kWritesEach = 15;
constexpr int kKills = 12;
#else
constexpr int kWritesEach = 40;
constexpr int kKills = 100;
#endif
constexpr int kWriters = 8;

os::testing::FakeProfile ProfileOf(const std::string& database) {
  os::testing::FakeProfile profile;
  profile.values["GLOBAL/DATABASE"] = database;
  return profile;
}

std::string KeyOf(int writer, int write) {
  return "Key" + std::to_string(writer) + "_" + std::to_string(write);
}

// What a writer does: keys of its own, one after the other, round and round when `writes` is 0.
int RunWriter(int number, int writes) {
  const os::testing::FakeProfile profile = ProfileOf(testing::ChildFolder());
  SettingsStore store(profile, os::RealFiles());
  for (int i = 0; writes == 0 || i < writes; ++i) {
    const os::FileOutcome outcome = store.SetInt("W" + std::to_string(number % 3), KeyOf(number, i % 40), i);
    if (outcome != os::FileOutcome::kOk) return 10 + static_cast<int>(outcome);
  }
  return 0;
}

std::unique_ptr<testing::ChildProcess> WriterProcess(int number, int writes) {
  return std::make_unique<testing::ChildProcess>(
      std::vector<std::string>{"--writer", std::to_string(number), std::to_string(writes)});
}

class SettingsProcesses : public ::testing::Test {
 protected:
  SettingsProcesses() {
    testing::SetChildFolder(folder.Native());
    EXPECT_EQ(os::RealFiles().Replace(store.FileName(), kComment), os::FileOutcome::kOk);
  }
  std::string Content() {
    std::string content;
    EXPECT_EQ(os::RealFiles().Read(store.FileName(), 1 << 20, content), os::FileOutcome::kOk);
    return content;
  }

  // False when nobody writes for long.
  bool WaitForChange(const std::string& before) {
    for (int waited = 0; waited < 30000; waited += 2) {
      if (Content() != before) return true;
      os::SleepMilliseconds(2);
    }
    return false;
  }

  static constexpr std::string_view kComment = "; 表\r\n[W0]\r\n; mine\r\nforeign=1\r\n";
  os::testing::TemporaryFolder folder{"processes"};
  os::testing::FakeProfile profile = ProfileOf(folder.Path());
  SettingsStore store{profile, os::RealFiles()};
};

TEST_F(SettingsProcesses, EightWritersLoseNoKey) {
  {
    std::vector<std::unique_ptr<testing::ChildProcess>> writers;
    for (int w = 0; w < kWriters; ++w) writers.push_back(WriterProcess(w, kWritesEach));
    for (const auto& writer : writers) EXPECT_EQ(writer->Wait(), 0);
  }
  const SettingsSnapshot settings = store.Open();
  for (int w = 0; w < kWriters; ++w) {
    for (int i = 0; i < kWritesEach; ++i) {
      EXPECT_EQ(settings.GetInt("W" + std::to_string(w % 3), KeyOf(w, i), -1), i) << w << ' ' << i;
    }
  }
  EXPECT_EQ(settings.GetInt("W0", "foreign", 0), 1);
  EXPECT_TRUE(Content().starts_with(kComment));
}

// The text that the kills leave is always one that some write finished: every line is whole.
bool IsWhole(const std::string& content, std::string_view beginning) {
  if (!content.starts_with(beginning) || !content.ends_with("\r\n")) return false;
  for (std::size_t at = beginning.size(); at < content.size();) {
    const std::size_t end = content.find("\r\n", at);
    if (end == std::string::npos) return false;
    const std::string_view line = std::string_view(content).substr(at, end - at);
    const std::size_t equals = line.find('=');
    const bool section = line.size() == 4 && line.starts_with("[W");
    const bool key = line.starts_with("Key") && equals != std::string_view::npos && equals + 1 < line.size();
    if (!section && !key) return false;
    at = end + 2;
  }
  return true;
}

TEST_F(SettingsProcesses, AKilledWriterLeavesAWholeFile) {
  std::mt19937 generator(5);
  std::string before = Content();
  for (int i = 0; i < kKills; ++i) {
    {
      const auto writer = WriterProcess(3, 0);
      ASSERT_TRUE(WaitForChange(before)) << "the writer does nothing";
      os::SleepMilliseconds(static_cast<int>(generator() % 30));
    }  // killed here
    const std::string content = Content();
    ASSERT_TRUE(IsWhole(content, kComment)) << content;
    ASSERT_GE(content.size() + 200, before.size()) << "keys were lost";
    before = content;
  }
  EXPECT_EQ(store.SetInt("W0", "after", 1), os::FileOutcome::kOk);  // no lock is left behind
  EXPECT_EQ(store.Open().GetInt("W0", "after", 0), 1);
}

}  // namespace
}  // namespace kova

int main(int argc, char** argv) {
  const bool isWriter = argc > 1 && std::string_view(argv[1]) == "--writer";
  if (isWriter) return argc == 4 ? kova::RunWriter(std::atoi(argv[2]), std::atoi(argv[3])) : 2;
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
