#include "platform/toollib/tools.h"

#include <gtest/gtest.h>

#include "platform/os/files.h"
#include "platform/os/testing/temporary_folder.h"

namespace {

TEST(Tools, NumbersWithSeparators) {
  const struct {
    std::int64_t number;
    const char* text;
  } rows[] = {{0, "0"},
              {999, "999"},
              {1000, "1,000"},
              {-100, "-100"},
              {-1000, "-1,000"},
              {123456, "123,456"},
              {1234567, "1,234,567"},
              {INT32_MIN, "-2,147,483,648"},
              {INT64_MIN, "-9,223,372,036,854,775,808"}};
  for (const auto& row : rows) EXPECT_EQ(CTools::NumericFormat(row.number), row.text);
}

TEST(Tools, AFileExistsAndAFolderIsNone) {
  const kova::os::testing::TemporaryFolder folder("tools");
  const std::string path = folder.Path() + "表.tmp";
  EXPECT_FALSE(CTools::ExistFile(path));
  ASSERT_EQ(kova::os::RealFiles().Replace(path, "x"), kova::os::FileOutcome::kOk);
  EXPECT_TRUE(CTools::ExistFile(path));
  EXPECT_FALSE(CTools::ExistFile(folder.Path()));
}

}  // namespace
