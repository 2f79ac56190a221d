#include "foundation/settings.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

#include "foundation/settings_store.h"
#include "platform/os/testing/fake_files.h"

namespace kova::foundation {
namespace {

using os::FileOutcome;
using os::testing::FakeFiles;
using os::testing::FakeProfile;

TEST(SettingsSnapshot, LimitsAndDefaults) {
  const SettingsSnapshot settings("[A]\nlong=" + std::string(1200, 'x') + "\nquoted=\"" +
                                  std::string(999, 'q') + "\"\nwide=x" + std::string(600, '\x82') +
                                  "\nempty=\n");
  EXPECT_EQ(settings.GetString("A", "long", ""), std::string(999, 'x'));
  EXPECT_EQ(settings.GetString("A", "quoted", ""), std::string(999, 'q'));
  EXPECT_EQ(settings.GetString("A", "empty", "d"), "");
  EXPECT_EQ(settings.GetString("A", "none", " 'd' \t  "), " 'd' \t");
  EXPECT_EQ(settings.GetString("A", "none", std::string(1200, 'd')), std::string(999, 'd'));
  EXPECT_EQ(SettingsSnapshot("").GetString("A", "k", "d"), "d");
}

TEST(SettingsSnapshot, NumbersByAtoi) {
  const struct {
    const char* line;
    int expected;
  } rows[] = {{"", 5},
              {"n=", 0},
              {"n", 5},
              {"n=abc", 0},
              {"n=12abc", 12},
              {"n= \t-7", -7},
              {"n=+7", 7},
              {"n=--7", 0},
              {"n=0x10", 0},
              {"n=\" 8\"", 8},
              {"n=2147483647", INT_MAX},
              {"n=2147483648", INT_MAX},
              {"n=-2147483648", INT_MIN},
              {"n=-99999999999999999999", INT_MIN},
              {"n=99999999999999999999", INT_MAX}};
  for (const auto& row : rows) {
    const SettingsSnapshot settings(std::string("[MENTE]\r\n") + row.line + "\r\n");
    EXPECT_EQ(settings.GetInt("MENTE", "n", 5), row.expected) << row.line;
  }
}

class SettingsStoreTest : public ::testing::Test {
 protected:
  FakeProfile profile;
  FakeFiles files;
  SettingsStore store{profile, files};
};

TEST_F(SettingsStoreTest, FindsItsFile) {
  const struct {
    const char* database;
    const char* number;
    const char* expected;
  } rows[] = {{"", "2", ""},
              {"D:\\Data", "0", "D:\\Data\\GLOBALSETTING.ini"},
              {"D:\\Data\\", "0", "D:\\Data\\GLOBALSETTING.ini"},
              {"D:\\表", "3", "D:\\表\\GLOBALSETTING_3.ini"},
              {"D:\\Data", "-1", "D:\\Data\\GLOBALSETTING_-1.ini"}};
  for (const auto& row : rows) {
    profile.values = {{"GLOBAL/DATABASE", row.database}, {"GLOBAL/PROFILE", row.number}};
    EXPECT_EQ(store.FileName(), row.expected);
  }
}

TEST_F(SettingsStoreTest, ExistenceIsThatOfProfileZero) {
  EXPECT_FALSE(store.Exists());
  profile.values = {{"GLOBAL/DATABASE", "D:\\Data"}, {"GLOBAL/PROFILE", "2"}};
  files.contents["D:\\Data\\GLOBALSETTING_2.ini"] = "";
  EXPECT_FALSE(store.Exists());
  files.contents["D:\\Data\\GLOBALSETTING.ini"] = "";
  EXPECT_TRUE(store.Exists());
}

TEST_F(SettingsStoreTest, OneOpeningAnOperationAndChangesAreSeenByTheNext) {
  profile.values = {{"GLOBAL/DATABASE", "D:"}};
  files.contents["D:\\GLOBALSETTING.ini"] = "; practice\r\n[MENTE]\r\nTaxCount=1\r\n";
  const SettingsSnapshot before = store.Open();
  EXPECT_EQ(before.GetInt("MENTE", "TaxCount", 0), 1);
  EXPECT_EQ(before.GetInt("MENTE", "Other", 4), 4);
  EXPECT_EQ(files.reads, 1);
  EXPECT_EQ(store.SetInt("MENTE", "TaxCount", -2), FileOutcome::kOk);
  EXPECT_EQ(store.SetString("EMail", "Name", "表"), FileOutcome::kOk);
  EXPECT_EQ(before.GetInt("MENTE", "TaxCount", 0), 1);
  EXPECT_EQ(store.Open().GetInt("MENTE", "TaxCount", 0), -2);
  EXPECT_EQ(files.contents["D:\\GLOBALSETTING.ini"],
            "; practice\r\n[MENTE]\r\nTaxCount=-2\r\n[EMail]\r\nName=表\r\n");
}

TEST_F(SettingsStoreTest, WithoutFolderOrFileDefaultsComeBack) {
  EXPECT_EQ(store.SetInt("A", "k", 1), FileOutcome::kNotThere);
  EXPECT_TRUE(files.contents.empty());
  EXPECT_EQ(store.Open().GetInt("A", "k", 9), 9);
  profile.values = {{"GLOBAL/DATABASE", "D:"}};
  EXPECT_EQ(store.Open().GetString("A", "k", "d"), "d");
  files.contents["D:\\GLOBALSETTING.ini"] = "[A]\nk=1\n";
  files.failing = os::testing::FakeStep::kRead;
  EXPECT_EQ(store.Open().GetInt("A", "k", 9), 9);
}

// Money is not booked on defaults that stand for what could not be read.
TEST_F(SettingsStoreTest, WhatCannotBeReadIsNotTakenForMissing) {
  EXPECT_TRUE(store.Open().IsReadable()) << "not configured";
  profile.values = {{"GLOBAL/DATABASE", "D:\\Data"}};
  EXPECT_FALSE(store.Open().IsReadable()) << "the folder is gone";
  files.folders.insert("D:\\Data");
  EXPECT_TRUE(store.Open().IsReadable()) << "a folder without the file";
  std::string& content = files.contents["D:\\Data\\GLOBALSETTING.ini"];
  EXPECT_TRUE(store.Open().IsReadable()) << "an empty file";
  content = std::string(300, '\0');
  EXPECT_FALSE(store.Open().IsReadable()) << "damaged";
  content += "[A]";
  EXPECT_TRUE(store.Open().IsReadable());
  files.failing = os::testing::FakeStep::kRead;
  for (const FileOutcome outcome : {FileOutcome::kFailed, FileOutcome::kBusy, FileOutcome::kTooLarge}) {
    files.failure = outcome;
    EXPECT_FALSE(store.Open().IsReadable());
  }
}

TEST_F(SettingsStoreTest, SwitchFiles) {
  EXPECT_EQ(store.OptSys("x"), 0);
  profile.values = {{"GLOBAL/DATABASE", "D:\\表"}};
  const struct {
    std::string content;
    int expected;
  } rows[] = {{"", 0},      {"1", 1},     {" 12abc\r\n3", 12},
              {"\r\n5", 0}, {"on\n1", 0}, {"7" + std::string(9000, '\n'), 7}};
  EXPECT_EQ(store.OptSys("Opt.sys"), 0);
  for (const auto& row : rows) {
    files.contents["D:\\表\\Opt.sys"] = row.content;
    EXPECT_EQ(store.OptSys("Opt.sys"), row.expected) << row.content;
  }
}

}  // namespace
}  // namespace kova::foundation
