#include "platform/os/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/os/application_profile.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/paths.h"
#include "platform/os/profile_file.h"
#include "platform/os/program.h"
#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/fake_retry_timing.h"
#include "platform/os/testing/temporary_folder.h"

#ifdef _WIN32
#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include "platform/os/input_method.h"
#include "platform/os/win32/native_path.h"
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace kova::os {
namespace {

namespace fs = std::filesystem;

class RealFilesTest : public ::testing::Test {
 protected:
  std::string Content(const std::string& path) {
    std::string content;
    return files.Read(path, 1 << 20, content) == FileOutcome::kOk ? content : "(unreadable)";
  }
  std::size_t Count() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder.Native())) ++count;
    return count;
  }

  testing::TemporaryFolder folder{"files"};
  Files& files = RealFiles();
  std::string file = folder.Path() + "ソ.ini";
};

TEST_F(RealFilesTest, ReplacesWholeAndReadsBack) {
  EXPECT_EQ(files.Kind(file), PathKind::kNothing);
  EXPECT_EQ(files.Replace(file, "one"), FileOutcome::kOk);
  EXPECT_EQ(files.Kind(file), PathKind::kFile);
  EXPECT_EQ(files.Replace(file, std::string(70000, 'x')), FileOutcome::kOk);
  EXPECT_EQ(Content(file), std::string(70000, 'x'));
  EXPECT_EQ(files.Replace(file, ""), FileOutcome::kOk);
  EXPECT_EQ(Content(file), "");
  EXPECT_EQ(Count(), 1u);
  EXPECT_TRUE(fs::exists(folder.Native() / ToFilesystemPath("ソ.ini")));
}

TEST_F(RealFilesTest, PreconditionIsChecked) {
  EXPECT_EQ(files.Replace(file, "one", Precondition::Content("")), FileOutcome::kChanged);
  EXPECT_EQ(files.Kind(file), PathKind::kNothing);
  EXPECT_EQ(files.Replace(file, "one", Precondition::NoFile()), FileOutcome::kOk);
  EXPECT_EQ(files.Replace(file, "two", Precondition::NoFile()), FileOutcome::kChanged);
  EXPECT_EQ(files.Replace(file, "two", Precondition::Content("on")), FileOutcome::kChanged);
  EXPECT_EQ(files.Replace(file, "two", Precondition::Content("one")), FileOutcome::kOk);
  EXPECT_EQ(Content(file), "two");
  EXPECT_EQ(Count(), 1u);
}

TEST_F(RealFilesTest, RenamesOnceAndOverNothing) {
  const std::string other = folder.Path() + "表.dat";
  EXPECT_EQ(files.Rename(file, other), FileOutcome::kNotThere);
  ASSERT_EQ(files.Replace(file, "one"), FileOutcome::kOk);
  EXPECT_EQ(files.Rename(file, other), FileOutcome::kOk);
  EXPECT_EQ(files.Rename(file, other), FileOutcome::kNotThere);
  ASSERT_EQ(files.Replace(file, "two"), FileOutcome::kOk);
  EXPECT_EQ(files.Rename(file, other), FileOutcome::kChanged);
  EXPECT_EQ(Content(file) + Content(other), "twoone");
}

TEST_F(RealFilesTest, ReadLimits) {
  ASSERT_EQ(files.Replace(file, "0123456789"), FileOutcome::kOk);
  std::string content;
  EXPECT_EQ(files.Read(file, 10, content), FileOutcome::kOk);
  EXPECT_EQ(files.Read(file, 9, content), FileOutcome::kTooLarge);
  EXPECT_EQ(content, "012345678");
  EXPECT_EQ(files.Read(file, 0, content), FileOutcome::kTooLarge);
  EXPECT_EQ(content, "");
}

TEST_F(RealFilesTest, NotThereAndFailedAreTold) {
  std::string content = "old";
  EXPECT_EQ(files.Read(file, 10, content), FileOutcome::kNotThere);
  EXPECT_EQ(content, "");
  EXPECT_EQ(files.Read(folder.Path() + "no\\such.ini", 10, content), FileOutcome::kNotThere);
  EXPECT_EQ(files.Read("", 10, content), FileOutcome::kNotThere);
  EXPECT_EQ(files.Read(std::string("a\0b", 3), 10, content), FileOutcome::kNotThere);
  EXPECT_EQ(files.Read(folder.Path(), 10, content), FileOutcome::kFailed);
  EXPECT_EQ(files.Replace(folder.Path() + "no\\such.ini", "x"), FileOutcome::kNotThere);
  EXPECT_EQ(files.Replace(std::string(DropTrailingDelimiter(folder.Path())), "x"), FileOutcome::kFailed);
}

TEST_F(RealFilesTest, AReadOnlyFileIsLeftAlone) {
  ASSERT_EQ(files.Replace(file, "one"), FileOutcome::kOk);
  fs::permissions(ToFilesystemPath(file),
                  fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  EXPECT_EQ(files.Replace(file, "two"), FileOutcome::kReadOnly);
  EXPECT_EQ(UpdateProfileFile(files, file, "A", "k", "v"), FileOutcome::kReadOnly);
  EXPECT_EQ(files.Delete(file), FileOutcome::kReadOnly);
  EXPECT_EQ(Content(file), "one");
  fs::permissions(ToFilesystemPath(file), fs::perms::owner_all);
  EXPECT_EQ(files.Replace(file, "two"), FileOutcome::kOk);
}

// A folder that has the name of the file to be made stands for one in which none can be made: the system refuses both alike.
TEST_F(RealFilesTest, WhereOnlyTheFileCanBeWrittenItIsWrittenInPlace) {
  ASSERT_EQ(files.Replace(file, "[A]\r\nk=1234567890\r\n"), FileOutcome::kOk);
  for (const bool withLock : {true, false}) {
    ASSERT_EQ(files.MakeFolder(file + (withLock ? ".new" : ".lock")), FileOutcome::kOk);
    EXPECT_EQ(UpdateProfileFile(files, file, "A", "k", withLock ? "2" : "12345"), FileOutcome::kOk);
    EXPECT_EQ(Content(file), withLock ? "[A]\r\nk=2\r\n" : "[A]\r\nk=12345\r\n");
    fs::remove(ToFilesystemPath(file + ".lock"));
  }
  EXPECT_EQ(files.Replace(file, "x"), FileOutcome::kNoAccess);
  EXPECT_EQ(files.WriteInPlace(file, "x", Precondition::Content("[A]")), FileOutcome::kChanged);
  EXPECT_EQ(files.WriteInPlace(file, "x", Precondition::NoFile()), FileOutcome::kChanged);
  EXPECT_EQ(Content(file), "[A]\r\nk=12345\r\n");
  EXPECT_EQ(files.WriteInPlace(folder.Path() + "none.ini", "x", {}), FileOutcome::kNotThere);
  EXPECT_EQ(UpdateProfileFile(files, folder.Path() + "none.ini", "A", "k", "1"), FileOutcome::kOk);
}

#ifdef _WIN32
std::wstring AccessListOf(const std::string& path) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  std::wstring text;
  LPWSTR shown = nullptr;
  if (GetNamedSecurityInfoW(NativePath(path).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                            nullptr, nullptr, &descriptor) == ERROR_SUCCESS &&
      ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION,
                                                           &shown, nullptr))
    text = shown;
  LocalFree(shown);
  LocalFree(descriptor);
  return text;
}

TEST_F(RealFilesTest, AReplacedFileKeepsItsAccessList) {
  ASSERT_EQ(files.Replace(file, "one"), FileOutcome::kOk);
  PSECURITY_DESCRIPTOR own = nullptr;
  // What files here have but for the last entry, as this file's own.
  const std::wstring usual = AccessListOf(file);
  ASSERT_NE(usual.find(L'('), std::wstring::npos);
  std::wstring fewer = L"D:P" + usual.substr(usual.find(L'('), usual.rfind(L'(') - usual.find(L'('));
  for (std::size_t at = fewer.find(L";ID;"); at != std::wstring::npos; at = fewer.find(L";ID;")) fewer.erase(at + 1, 2);
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(fewer.c_str(), SDDL_REVISION_1, &own, nullptr));
  ASSERT_TRUE(SetFileSecurityW(NativePath(file).c_str(), DACL_SECURITY_INFORMATION, own));
  LocalFree(own);
  const std::wstring before = AccessListOf(file);
  ASSERT_NE(before, usual);
  ASSERT_EQ(files.Replace(file, "two"), FileOutcome::kOk);
  EXPECT_EQ(AccessListOf(file), before);
}
#else
TEST_F(RealFilesTest, AReplacedFileKeepsOwnerModeAndLink) {
  ASSERT_EQ(files.MakeFolder(folder.Path() + "real"), FileOutcome::kOk);
  const std::string real = folder.Path() + "real\\x.ini";
  ASSERT_EQ(files.Replace(real, "one"), FileOutcome::kOk);
  const fs::path realPath = ToFilesystemPath(real), link = ToFilesystemPath(file);
  fs::create_symlink(fs::path("real") / "x.ini", link);
  const bool isRoot = ::geteuid() == 0;
  if (isRoot) {
    ASSERT_EQ(::chown(realPath.c_str(), 65533, 65532), 0);
  }
  fs::permissions(realPath, static_cast<fs::perms>(0640));
  ASSERT_EQ(UpdateProfileFile(files, file, "A", "k", "1"), FileOutcome::kOk);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Content(real), Content(file));
  EXPECT_NE(Content(real), "one");
  struct stat status {};
  ASSERT_EQ(::stat(realPath.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  if (isRoot) {
    EXPECT_EQ(std::pair(status.st_uid, status.st_gid), std::pair(uid_t{65533}, gid_t{65532}));
  }
}
#endif

TEST_F(RealFilesTest, ListsAndDeletesFilesOnly) {
  std::vector<std::string> names = {"old"};
  EXPECT_EQ(files.List(folder.Path(), names), FileOutcome::kOk);
  EXPECT_EQ(names, std::vector<std::string>());
  for (const char* name : {"b.$mt", "a.$mt", "ソ.$mt"})
    ASSERT_EQ(files.Replace(folder.Path() + name, "x"), FileOutcome::kOk);
  ASSERT_EQ(files.MakeFolder(folder.Path() + "c.$mt"), FileOutcome::kOk);
  // A name that the code page lacks.
  const fs::path foreign = folder.Native() / fs::path(u8"𠮷");
  ASSERT_TRUE(std::ofstream(foreign).good());
  EXPECT_EQ(files.List(DropTrailingDelimiter(folder.Path()), names), FileOutcome::kOk);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"a.$mt", "b.$mt", "ソ.$mt"}));
  for (const std::string& nothing : {folder.Path() + "no\\", folder.Path() + "a.$mt", std::string()}) {
    EXPECT_EQ(files.List(nothing, names), FileOutcome::kNotThere) << nothing;
    EXPECT_EQ(names.size(), 0u);
  }

  EXPECT_EQ(files.Delete(folder.Path() + "ソ.$mt"), FileOutcome::kOk);
  EXPECT_EQ(files.Kind(folder.Path() + "ソ.$mt"), PathKind::kNothing);
  EXPECT_EQ(files.Delete(folder.Path() + "ソ.$mt"), FileOutcome::kNotThere);
  EXPECT_EQ(files.Delete(""), FileOutcome::kNotThere);
  EXPECT_EQ(files.Delete(folder.Path() + "c.$mt"), FileOutcome::kFailed);
}

TEST_F(RealFilesTest, MakesEveryMissingFolder) {
  const std::string deep = folder.Path() + "表\\b\\ソ\\";
  EXPECT_EQ(files.MakeFolders(deep), FileOutcome::kOk);
  EXPECT_EQ(files.MakeFolders(deep), FileOutcome::kOk);
  EXPECT_EQ(files.Kind(deep), PathKind::kFolder);
  EXPECT_EQ(files.Kind(DropTrailingDelimiter(deep)), PathKind::kFolder);
  EXPECT_EQ(files.Kind(folder.Path() + "表\\b\\ソ"), PathKind::kFolder);
  ASSERT_EQ(files.Replace(deep + "file", "x"), FileOutcome::kOk);
  EXPECT_NE(files.MakeFolders(deep + "file\\below\\"), FileOutcome::kOk);
  EXPECT_NE(files.MakeFolders(deep + "file\\"), FileOutcome::kOk);
  EXPECT_NE(files.MakeFolders(""), FileOutcome::kOk);
}

TEST_F(RealFilesTest, LongPathsWork) {
  std::string deep = folder.Path();
  for (int i = 0; i < 12; ++i) deep += std::string(30, 'd') + "\\";
  ASSERT_EQ(files.MakeFolders(deep), FileOutcome::kOk);
  EXPECT_EQ(files.Replace(deep + "x.ini", "long"), FileOutcome::kOk);
  EXPECT_EQ(Content(deep + "x.ini"), "long");
#ifdef _WIN32
  // What the standard library cannot remove in such a depth.
  DeleteFileW(NativePath(deep + "x.ini").c_str());
  for (; deep != folder.Path(); deep = std::string(ParentFolderOf(deep)))
    RemoveDirectoryW(NativePath(deep).c_str());
#endif
}

TEST_F(RealFilesTest, ALockIsHeldUntilItsEnd) {
  std::unique_ptr<FileLock> first;
  std::unique_ptr<FileLock> second;
  const std::string name = file + ".lock";
  ASSERT_EQ(files.Lock(name, 0, first), FileOutcome::kOk);
  EXPECT_EQ(files.Lock(name, 30, second), FileOutcome::kBusy);
  first.reset();
  EXPECT_EQ(files.Lock(name, 0, second), FileOutcome::kOk);
  EXPECT_EQ(files.Lock(folder.Path() + "no\\such.lock", 5000, first), FileOutcome::kNotThere);
}

TEST_F(RealFilesTest, ApplicationProfileInAFile) {
  IniApplicationProfile profile(files, file);
  EXPECT_EQ(profile.GetString("GLOBAL", "DATABASE", "none"), "none");
  EXPECT_TRUE(profile.WriteString("GLOBAL", "DATABASE", "D:\\表"));
  EXPECT_TRUE(profile.WriteInt("GLOBAL", "PROFILE", -3));
  EXPECT_TRUE(profile.WriteString("GLOBAL", "EMPTY", ""));
  EXPECT_EQ(profile.GetString("global", "database", ""), "D:\\表");
  EXPECT_EQ(profile.GetInt("GLOBAL", "PROFILE", 0), -3);
  EXPECT_EQ(profile.GetInt("GLOBAL", "EMPTY", 7), 7);
  EXPECT_EQ(profile.GetInt("GLOBAL", "DATABASE", 7), 0);
  EXPECT_EQ(Content(file), "[GLOBAL]\r\nDATABASE=D:\\表\r\nPROFILE=-3\r\nEMPTY=\r\n");
  EXPECT_FALSE(IniApplicationProfile(files, "").WriteInt("A", "k", 1));
}

TEST(ProgramFolder, HoldsThisProgram) {
  const std::string folder = ProgramFolder();
  ASSERT_TRUE(folder.ends_with("\\"));
  EXPECT_EQ(RealFiles().Kind(folder), PathKind::kFolder);
}

TEST(UpdateProfileFile, EveryFaultLeavesTheOldFile) {
  const struct {
    testing::FakeStep step;
    FileOutcome outcome;
  } rows[] = {{testing::FakeStep::kRead, FileOutcome::kBusy},
              {testing::FakeStep::kRead, FileOutcome::kTooLarge},
              {testing::FakeStep::kWrite, FileOutcome::kFull},
              {testing::FakeStep::kRename, FileOutcome::kFailed},
              {testing::FakeStep::kLock, FileOutcome::kBusy}};
  for (const auto& row : rows) {
    testing::FakeFiles files;
    files.contents["x.ini"] = "[A]\nk=1\n";
    files.failing = row.step;
    files.failure = row.outcome;
    EXPECT_EQ(UpdateProfileFile(files, "x.ini", "A", "k", "2"), row.outcome);
    EXPECT_EQ(files.contents["x.ini"], "[A]\nk=1\n");
    EXPECT_EQ(files.locksHeld, 0);
  }
}

TEST(UpdateProfileFile, AForeignWriteInBetweenIsKept) {
  testing::FakeRetryTiming timing;
  testing::FakeFiles files;
  int times = 0;
  files.beforeRename = [&] {
    if (++times <= 2) files.contents["x.ini"] = "[A]\nother=" + std::to_string(times) + "\n";
  };
  EXPECT_EQ(UpdateProfileFile(files, "x.ini", "A", "k", "2", timing), FileOutcome::kOk);
  EXPECT_EQ(files.contents["x.ini"], "[A]\nother=2\nk=2\n");
  files.beforeRename = [&] { files.contents["x.ini"] = "[A]\nother=" + std::to_string(++times) + "\n"; };
  EXPECT_EQ(UpdateProfileFile(files, "x.ini", "A", "k", "3", timing), FileOutcome::kChanged);
}

#ifdef _WIN32
TEST(InputMethod, AWindowWithoutOneHasNothing) {
  EXPECT_FALSE(SystemInputMethod().Committed(nullptr).has_value());
}
#endif

}  // namespace
}  // namespace kova::os
