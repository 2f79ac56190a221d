#include <gtest/gtest.h>

#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/toollib/tools.h"

namespace {

using kova::os::FileOutcome;
using kova::os::testing::FakeFiles;
using kova::os::testing::FakeStep;
using Contents = std::map<std::string, std::string, std::less<>>;

const Contents kFrom = {{"C:\\from\\A.BTR", "mark"}, {"C:\\from\\b", "bb"}, {"C:\\from\\in\\c", "cc"}};

struct Folders {
  Folders() {
    files.folders = {"C:", "C:\\from", "C:\\from\\in"};
    files.contents = kFrom;
  }
  static Contents AllWith(const Contents& more) {
    Contents all = kFrom;
    all.insert(more.begin(), more.end());
    return all;
  }
  FakeFiles files;
};

const Contents kCopied = {{"C:\\to\\A.BTR", "mark"}, {"C:\\to\\b", "bb"}, {"C:\\to\\in\\c", "cc"}};

TEST(DirectoryCopy, CopiesAllAndTheMarkedOneLast) {
  Folders test;
  std::string reported;
  const auto report = [&](double done) { return reported += std::to_string(done).substr(0, 4) + " ", true; };
  EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\from\\", "C:\\to\\", 1, {"A.BTR", report}),
            FileOutcome::kOk);
  EXPECT_EQ(test.files.contents, test.AllWith(kCopied));
  EXPECT_EQ(test.files.temporaries,
            (std::vector<std::string>{"C:\\to\\b", "C:\\to\\in\\c", "C:\\to\\A.BTR"}));
  EXPECT_EQ(reported, "0.00 0.33 0.66 ");
  // Into itself: what is there when it begins.
  EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\from\\", "C:\\from\\in\\to", 1), FileOutcome::kOk);
  EXPECT_EQ(test.files.contents.size(), 9u);
}

TEST(DirectoryCopy, NeverWritesOverAnotherFile) {
  Folders test;
  test.files.folders.insert("C:\\to");
  test.files.contents["C:\\to\\b"] = "bb";  // of an earlier copying
  EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\from", "C:\\to", 1), FileOutcome::kOk);
  test.files.contents = test.AllWith({{"C:\\to\\b", "another's"}});
  EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\from", "C:\\to", 1), FileOutcome::kChanged);
  EXPECT_EQ(test.files.contents, test.AllWith({{"C:\\to\\b", "another's"}}));
  EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\from", "C:\\to", 0), FileOutcome::kOk);
  EXPECT_EQ(test.files.contents, test.AllWith(kCopied));
}

TEST(DirectoryCopy, TakesBackWhatItMadeWhenItFailsOrIsStopped) {
  Folders test;
  test.files.failing = FakeStep::kWrite;
  test.files.failure = FileOutcome::kFull;
  for (int made = 0; made < 3; ++made) {
    test.files.writesBeforeFailure = made;
    EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\from", "C:\\to", 1), FileOutcome::kFull);
    EXPECT_EQ(test.files.contents, kFrom);
  }
  test.files.failing = FakeStep::kNone;
  const auto stop = [](double done) { return done < 0.5; };
  EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\from", "C:\\to", 1, {{}, stop}), FileOutcome::kBusy);
  EXPECT_EQ(test.files.contents, kFrom);
  EXPECT_EQ(CTools::DirectoryCopy(test.files, "C:\\gone", "C:\\to", 1), FileOutcome::kNotThere);
}

TEST(DirectoryCopy, CopiesRealFolders) {
  const kova::os::testing::TemporaryFolder folder("directory_copy");
  kova::os::Files& files = kova::os::RealFiles();
  const std::string from = folder.Path() + "表\\", deep = from + "能\\", to = folder.Path() + "予\\ソ";
  ASSERT_EQ(files.MakeFolders(deep), FileOutcome::kOk);
  ASSERT_EQ(files.Create(from + "a", std::string(300000, 'x')), FileOutcome::kOk);
  ASSERT_EQ(files.Create(deep + "表", ""), FileOutcome::kOk);
  EXPECT_EQ(files.Create(from + "a", "y"), FileOutcome::kChanged);
  EXPECT_EQ(CTools::DirectoryCopy(files, from, to, 1), FileOutcome::kOk);
  EXPECT_EQ(CTools::DirectoryCopy(files, from, to, 1), FileOutcome::kOk);
  std::string content;
  EXPECT_EQ(files.Read(to + "\\a", 1 << 20, content), FileOutcome::kOk);
  EXPECT_EQ(content, std::string(300000, 'x'));
  EXPECT_EQ(files.Kind(to + "\\能\\表"), kova::os::PathKind::kFile);
  EXPECT_EQ(files.Copy(deep + "表", to + "\\a"), FileOutcome::kChanged);
  EXPECT_EQ(files.Copy(from + "none", to + "\\none"), FileOutcome::kNotThere);
  EXPECT_NE(CTools::DirectoryCopy(files, from, to + "\\a", 1), FileOutcome::kOk);
}

TEST(LastDelim, StepsByCharacters) {
  EXPECT_EQ(CTools::LastDelimAdd("C:\\表"), "C:\\表\\");
  EXPECT_EQ(CTools::LastDelimAdd("C:\\表\\"), "C:\\表\\");
  EXPECT_EQ(CTools::LastDelimAdd(""), "");
  EXPECT_EQ(CTools::LastDelimDel("C:\\表\\"), "C:\\表");
  EXPECT_EQ(CTools::LastDelimDel("C:\\表"), "C:\\表");
}

}  // namespace
