#include <gtest/gtest.h>

#include <filesystem>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/resource.h>

#include <csignal>
#endif

#include "platform/os/testing/temporary_folder.h"
#include "printing/testing/worked_receipts.h"

namespace kova::printing {
namespace {

using os::FileOutcome;
using os::testing::FakeStep;

// With the real files. The old ".tmp" stays until the new one is whole, and no ".tm_" is left.
class HandOverOnDisk : public ::testing::Test {
 protected:
  std::string Content(const std::string& path) {
    std::string bytes;
    const FileOutcome outcome = os::RealFiles().Read(path, 1 << 20, bytes);
    return outcome == FileOutcome::kOk ? bytes : "(none)";
  }
  void ExpectOldOne(const std::string& what) {
    EXPECT_EQ(HandOver(os::RealFiles(), base_, data_), PrintStatus::kNotWritten) << what;
    EXPECT_EQ(Content(base_ + ".tmp"), "old") << what;
    EXPECT_EQ(Content(base_ + ".tm_"), "(none)") << what;
  }
  void PutOldOne() { ASSERT_EQ(os::RealFiles().Replace(base_ + ".tmp", "old"), FileOutcome::kOk); }

  os::testing::TemporaryFolder folder_{"handover"};
  const std::string base_ = folder_.Path() + "領収書_表";
  const PrintData data_ = testing::BothRates();
};

TEST_F(HandOverOnDisk, ReplacesAnOlderFileAndWhatACrashLeft) {
  PutOldOne();
  ASSERT_EQ(os::RealFiles().Replace(base_ + ".tm_", "half of " + std::string(100000, 'x')), FileOutcome::kOk);
  EXPECT_EQ(HandOver(os::RealFiles(), base_, data_), PrintStatus::kDone);
  EXPECT_EQ(Content(base_ + ".tmp"), WritePrintData(data_));
  EXPECT_EQ(Content(base_ + ".tm_"), "(none)");
  EXPECT_EQ(HandOver(os::RealFiles(), folder_.Path() + "missing\\r", data_), PrintStatus::kNotWritten);
}

TEST_F(HandOverOnDisk, TheOldFileStaysWhenItCannotBeReplaced) {
  PutOldOne();
  const std::filesystem::path file = os::ToFilesystemPath(base_ + ".tmp");
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  ExpectOldOne("read-only");
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
#ifdef _WIN32
  const HANDLE printer = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(printer, INVALID_HANDLE_VALUE);
  ExpectOldOne("held by the printer");
  CloseHandle(printer);
#else
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{1000, before.rlim_max};
  std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  ExpectOldOne("full in the middle");
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
#endif
  EXPECT_EQ(HandOver(os::RealFiles(), base_, data_), PrintStatus::kDone);
}

// A disk that fails at each step.
TEST(HandOver, TheOldFileOrTheNewOne) {
  os::testing::FakeFiles files;
  EXPECT_EQ(HandOver(files, "C:\\print\\R1", testing::BothRates()), PrintStatus::kDone);
  EXPECT_EQ(files.temporaries, std::vector<std::string>{"C:\\print\\R1.tm_"});
  EXPECT_EQ(files.contents.at("C:\\print\\R1.tmp"), WritePrintData(testing::BothRates()));
  for (const FakeStep step : {FakeStep::kWrite, FakeStep::kRename}) {
    files.contents["C:\\print\\R1.tmp"] = "old";
    files.failing = step;
    files.failure = FileOutcome::kFull;
    EXPECT_EQ(HandOver(files, "C:\\print\\R1", testing::BothRates()), PrintStatus::kNotWritten);
    EXPECT_EQ(files.contents.size(), 1u);
    EXPECT_EQ(files.contents.at("C:\\print\\R1.tmp"), "old");
  }
}

}  // namespace
}  // namespace kova::printing
