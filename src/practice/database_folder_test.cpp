#include "practice/database_folder.h"

#include <gtest/gtest.h>

#include "foundation/string_table.h"
#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"

namespace kova::practice {
namespace {

using os::FileOutcome;
using os::testing::FakeProfile;

class DatabaseFolder : public testing::Test {
 protected:
  std::string Stored() const { return StoredFolder(profile); }
  FolderUse Use(CKovaDBSys* db, const std::string& name) { return UseFolder(files, profile, db, name); }
  FileOutcome MakeEmpty(const std::string& to) {
    foundation::NoProgress progress;
    return CopyEmptyDatabase(files, root.Path() + "bin\\", to, progress);
  }
  /// A template as it is installed, made by the record store.
  void InstallTemplate() { ASSERT_EQ(KovaCreateDatabase((root.Path() + "KovaEmptyDB").c_str()), 0); }

  os::testing::TemporaryFolder root{"database_folder"};
  os::Files& files = os::RealFiles();
  FakeProfile profile;
};

TEST_F(DatabaseFolder, IsStoredAndOpened) {
  const std::string first = root.Path() + "表", second = root.Path() + "二つ目\\", none = root.Path() + "空";
  ASSERT_EQ(KovaCreateDatabase(first.c_str()), 0);
  ASSERT_EQ(KovaCreateDatabase(second.c_str()), 0);
  ASSERT_EQ(files.MakeFolder(none), FileOutcome::kOk);
  ASSERT_EQ(files.Create(root.Path() + "file", ""), FileOutcome::kOk);
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(second.c_str()), 0);
  // What is no folder changes nothing.
  for (const std::string& name :
       {std::string(), root.Path() + "gone", root.Path() + "file", root.Path() + "表ソ",
        root.Path() + std::string(300, 'x'), std::string("a\0b", 3)}) {
    EXPECT_EQ(Use(&db, name), FolderUse::kNoFolder) << name;
    EXPECT_EQ(Stored(), "");
    EXPECT_TRUE(db.IsOpen());
  }
  EXPECT_EQ(Use(&db, first), FolderUse::kDone);
  EXPECT_EQ(Stored(), first + "\\");
  EXPECT_TRUE(db.IsOpen());
  // One without a database is stored all the same, and nothing is open.
  EXPECT_EQ(Use(&db, none), FolderUse::kNotConnected);
  EXPECT_EQ(Stored(), none + "\\");
  EXPECT_FALSE(db.IsOpen());
  EXPECT_EQ(Use(&db, second), FolderUse::kDone);
  EXPECT_EQ(Stored(), second);
  EXPECT_EQ(Use(nullptr, none), FolderUse::kDone);
}

TEST_F(DatabaseFolder, StaysWhenTheProfileCannotBeWritten) {
  struct Unwritable final : os::ApplicationProfile {
    std::string GetString(std::string_view, std::string_view, std::string_view) const override {
      return "old";
    }
    std::int32_t GetInt(std::string_view, std::string_view, std::int32_t number) const override {
      return number;
    }
    bool WriteString(std::string_view, std::string_view, std::string_view) override { return false; }
    bool WriteInt(std::string_view, std::string_view, std::int32_t) override { return false; }
  } unwritable;
  ASSERT_EQ(KovaCreateDatabase(root.Path().c_str()), 0);
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(root.Path().c_str()), 0);
  EXPECT_EQ(UseFolder(files, unwritable, &db, root.Path()), FolderUse::kNotStored);
  EXPECT_TRUE(db.IsOpen());
}

TEST_F(DatabaseFolder, EmptyDatabaseOpensAndIsNeverWrittenOver) {
  InstallTemplate();
  const std::string target = root.Path() + std::string(120, 'x') + "\\新しい表";
  ASSERT_EQ(MakeEmpty(target), FileOutcome::kOk);
  EXPECT_TRUE(HoldsDatabase(files, target));
  CKovaDBSys db;
  EXPECT_EQ(Use(&db, target), FolderUse::kDone);
  EXPECT_EQ(MakeEmpty(target), FileOutcome::kChanged);
  // A database whose marker is lost is one all the same.
  const std::string lost = root.Path() + "lost\\";
  ASSERT_EQ(files.MakeFolder(lost), FileOutcome::kOk);
  ASSERT_EQ(files.Create(lost + "kova.db", "the practice's records"), FileOutcome::kOk);
  EXPECT_EQ(MakeEmpty(lost), FileOutcome::kChanged);
  EXPECT_FALSE(HoldsDatabase(files, lost));
  std::string content;
  EXPECT_EQ(files.Read(lost + "kova.db", 100, content), FileOutcome::kOk);
  EXPECT_EQ(content, "the practice's records");
  // Into the template itself, into a file, and without a name.
  EXPECT_EQ(MakeEmpty(root.Path() + "KovaEmptyDB\\"), FileOutcome::kChanged);
  EXPECT_NE(MakeEmpty(lost + "kova.db"), FileOutcome::kOk);
  EXPECT_EQ(MakeEmpty(""), FileOutcome::kNotThere);
}

TEST_F(DatabaseFolder, WithoutTemplateNothingIsMade) {
  EXPECT_EQ(MakeEmpty(root.Path() + "new"), FileOutcome::kNotThere);
  EXPECT_EQ(files.Kind(root.Path() + "new"), os::PathKind::kNothing);
}

TEST(EmptyDatabase, LiesBesideTheProgramFolder) {
  const char* cases[][2] = {{"C:\\Kova\\bin\\", "C:\\Kova\\KovaEmptyDB\\"},
                            {"C:\\Kova\\bin", "C:\\Kova\\KovaEmptyDB\\"},
                            {"C:\\表\\ソ", "C:\\表\\KovaEmptyDB\\"},
                            {"C:\\bin", "C:\\KovaEmptyDB\\"}};
  for (const auto& [program, folder] : cases) EXPECT_EQ(EmptyDatabaseFolder(program), folder) << program;
}

TEST(EmptyDatabase, MarkerIsWrittenLast) {
  os::testing::FakeFiles files;
  files.folders = {"C:", "C:\\KovaEmptyDB"};
  files.contents = {{"C:\\KovaEmptyDB\\INDEXCONTROL.BTR", "m"}, {"C:\\KovaEmptyDB\\kova.db", "d"}};
  foundation::NoProgress progress;
  files.failing = os::testing::FakeStep::kWrite;
  files.failure = FileOutcome::kFull;
  files.writesBeforeFailure = 1;
  EXPECT_EQ(CopyEmptyDatabase(files, "C:\\bin", "C:\\new", progress), FileOutcome::kFull);
  EXPECT_EQ(files.contents.size(), 2u);
  files.failing = os::testing::FakeStep::kNone;
  files.temporaries.clear();
  EXPECT_EQ(CopyEmptyDatabase(files, "C:\\bin", "C:\\new", progress), FileOutcome::kOk);
  EXPECT_EQ(files.temporaries, (std::vector<std::string>{"C:\\new\\kova.db", "C:\\new\\INDEXCONTROL.BTR"}));
}

}  // namespace
}  // namespace kova::practice
