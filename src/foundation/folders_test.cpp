#include "foundation/folders.h"

#include <gtest/gtest.h>

#include "platform/os/testing/fake_files.h"

namespace kova::foundation {
namespace {

using os::testing::FakeFiles;
using os::testing::FakeProfile;
using os::testing::FakeStep;

FakeProfile Profile(const char* database, const char* photo = "") {
  FakeProfile profile;
  profile.values = {{"GLOBAL/DATABASE", database}, {"GLOBAL/Photo", photo}};
  return profile;
}

TEST(Folders, AroundTheProgram) {
  const struct {
    const char* program;
    const char* install;
    const char* temporary;
  } rows[] = {{"C:\\App\\Bin\\", "C:\\App\\", "C:\\App\\Bin\\tmp\\"},
              {"C:\\App\\Bin", "C:\\App\\", "C:\\App\\Bin\\tmp\\"},
              {"C:\\App\\表\\", "C:\\App\\", "C:\\App\\表\\tmp\\"},
              {"C:\\App\\表", "C:\\App\\", "C:\\App\\表\\tmp\\"},
              {"C:\\表\\ソ\\", "C:\\表\\", "C:\\表\\ソ\\tmp\\"},
              {"C:\\", "C:\\", "C:\\tmp\\"}};
  for (const auto& row : rows) {
    FakeFiles files;
    EXPECT_EQ(InstallFolder(row.program), row.install);
    EXPECT_EQ(TemporaryFolder(row.program, files), row.temporary);
    EXPECT_EQ(files.Kind(row.temporary), os::PathKind::kFolder);
    files.folders.clear();
    files.failing = FakeStep::kMakeFolder;
    EXPECT_EQ(TemporaryFolder(row.program, files), "");
  }
}

TEST(Folders, InTheDatabaseFolder) {
  EXPECT_EQ(TemplatesFolder(Profile("")), "");
  EXPECT_EQ(TemplatesFolder(Profile("D:\\Data")), "D:\\Data\\templates\\");
  EXPECT_EQ(TemplatesFolder(Profile("D:\\表")), "D:\\表\\templates\\");
  EXPECT_EQ(TemplatesFolder(Profile("D:\\表\\")), "D:\\表\\templates\\");

  FakeFiles files;
  EXPECT_EQ(PhotoPath(Profile("D:\\Data"), files), "D:\\Data\\Photo\\");
  EXPECT_EQ(PhotoPath(Profile("D:\\表"), files), "D:\\表\\Photo\\");
  EXPECT_EQ(PhotoPath(Profile(""), files), "\\Photo\\");
  EXPECT_TRUE(files.folders.contains("D:\\Data\\Photo"));
  files.failing = FakeStep::kMakeFolder;
  EXPECT_EQ(PhotoPath(Profile("E:\\Data"), files), "");
  EXPECT_EQ(FacePhotoPath(Profile("E:\\Data"), files, "1", false), "");
  EXPECT_EQ(PhotoPath(Profile("E:\\Data", "E:\\Pics"), files), "E:\\Pics");
}

TEST(Folders, OfAPatientsPhotos) {
  FakeFiles files;
  const FakeProfile with = Profile("D:", "E:\\Pics\\");
  const FakeProfile without = Profile("D:", "E:\\Pics");
  EXPECT_EQ(PatientPhotoFolder(with, files, "0000012345", false), "E:\\Pics\\0000012345\\");
  EXPECT_EQ(PatientPhotoFolder(without, files, "0000012345", false), "E:\\Pics0000012345\\");
  EXPECT_TRUE(files.folders.empty());
  EXPECT_EQ(FacePhotoPath(with, files, "0000012345", true), "E:\\Pics\\0000012345\\0000000000.jpg");
  EXPECT_TRUE(files.folders.contains("E:\\Pics\\0000012345"));
  files.folders.clear();
  files.failing = FakeStep::kMakeFolder;
  EXPECT_EQ(PatientPhotoFolder(with, files, "0000012345", true), "");
  EXPECT_EQ(FacePhotoPath(with, files, "0000012345", true), "");
}

TEST(Folders, ThatSwitchLinksOn) {
  const struct {
    Connection connection;
    const char* path;
  } rows[] = {{Connection::kGoogle, "D:\\表\\EntryToGoogle"},
              {Connection::kWeb, "D:\\表\\EntryToWeb"},
              {Connection::kCheckIn, "D:\\表\\CheckIn"}};
  for (const auto& row : rows) {
    FakeFiles files;
    EXPECT_EQ(ConnectionPath(Profile("D:\\表"), files, row.connection), "");
    files.folders.insert(row.path);
    EXPECT_EQ(ConnectionPath(Profile("D:\\表"), files, row.connection), std::string(row.path) + "\\");
    EXPECT_EQ(ConnectionPath(Profile("D:\\表\\"), files, row.connection), std::string(row.path) + "\\");
    EXPECT_EQ(ConnectionPath(Profile(""), files, row.connection), "");
  }
}

}  // namespace
}  // namespace kova::foundation
