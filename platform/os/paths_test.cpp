#include "platform/os/paths.h"

#include <gtest/gtest.h>

namespace kova::os {
namespace {

TEST(Paths, StepByCharacters) {
  const struct {
    std::string_view path, added, dropped, folder, name, parent;
  } rows[] = {
      {"", "", "", "", "", ""},
      {"C:\\A", "C:\\A\\", "C:\\A", "C:\\", "A", "C:\\"},
      {"C:\\A\\", "C:\\A\\", "C:\\A", "C:\\A\\", "", "C:\\"},
      {"C:\\A\\b.ini", "C:\\A\\b.ini\\", "C:\\A\\b.ini", "C:\\A\\", "b.ini", "C:\\A\\"},
      {"C:\\表", "C:\\表\\", "C:\\表", "C:\\", "表", "C:\\"},
      {"C:\\表\\", "C:\\表\\", "C:\\表", "C:\\表\\", "", "C:\\"},
      {"表", "表\\", "表", "", "表", ""},
      {"C:\\", "C:\\", "C:", "C:\\", "", "C:"},
      {"C:x", "C:x\\", "C:x", "C:", "x", "C:"},
      {"\\\\srv\\share\\", "\\\\srv\\share\\", "\\\\srv\\share", "\\\\srv\\share\\", "", "\\\\srv\\"},
      {"a/b", "a/b\\", "a/b", "a/", "b", "a/"},
      {"\x95", "\x95\\", "\x95", "", "\x95", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(AddTrailingDelimiter(row.path), row.added) << row.path;
    EXPECT_EQ(DropTrailingDelimiter(row.path), row.dropped) << row.path;
    EXPECT_EQ(FolderOf(row.path), row.folder) << row.path;
    EXPECT_EQ(FileNameOf(row.path), row.name) << row.path;
    EXPECT_EQ(ParentFolderOf(row.path), row.parent) << row.path;
  }
  EXPECT_EQ(JoinPath("C:\\表", "ソ.ini"), "C:\\表\\ソ.ini");
  EXPECT_EQ(JoinPath("", "x"), "x");
}

}  // namespace
}  // namespace kova::os
