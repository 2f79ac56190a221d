#include "mail/template_store.h"

#include <gtest/gtest.h>

#include <tuple>

#include "platform/os/testing/fake_files.h"

namespace kova::mail {
namespace {

using os::FileOutcome;
using namespace std::string_literals;

class TemplateStoreTest : public ::testing::Test {
 protected:
  TemplateStoreTest() { files.folders.insert("C:\\表"); }
  std::string& File(const std::string& name) { return files.contents["C:\\表\\" + name]; }

  os::testing::FakeFiles files;
  TemplateStore store{files, "C:\\表"};
};

TEST_F(TemplateStoreTest, PrefixesOfEveryWidth) {
  const std::tuple<std::size_t, std::string> cases[] = {{0, "\0"s},
                                                        {254, "\xFE"},
                                                        {255, "\xFF\xFF\0"s},
                                                        {65533, "\xFF\xFD\xFF"},
                                                        {65534, "\xFF\xFF\xFF\xFE\xFF\0\0"s}};
  for (const auto& [length, prefix] : cases) {
    const MailTemplate written{std::string(length, '\x95'), "件名\0後"s, std::string(length, '\0')};
    ASSERT_EQ(store.Write(6, written), FileOutcome::kOk);
    EXPECT_TRUE(File("0006.$mt").starts_with(prefix + written.name + "\x07")) << length;
    MailTemplate read;
    EXPECT_EQ(store.Read(6, read), FileOutcome::kOk) << length;
    EXPECT_TRUE(read == written) << length;
  }
}

TEST_F(TemplateStoreTest, DamagedFilesAreRefusedAndOddOnesTaken) {
  const std::tuple<const char*, std::string, bool> cases[] = {
      {"empty", "", false},
      {"two texts only", "\1a\1b", false},
      {"last text cut", "\1a\1b\2c", false},
      {"prefix cut", "\1a\1b\xFF\1", false},
      {"long prefix cut", "\1a\1b\xFF\xFF\xFF\1\0\0"s, false},
      {"four gigabytes said", "\1a\1b\xFF\xFF\xFF\xFE\xFF\xFF\xFF"s + "c", false},
      {"a Unicode text", "\xFF\xFE\xFF\1a\0\1b\1c"s, false},
      {"longer prefixes than needed", "\xFF\1\0a\xFF\xFF\xFF\1\0\0\0b\1c"s, true},
      {"bytes behind the third", "\1a\1b\1c\1d", true}};
  for (const auto& [name, bytes, readable] : cases) {
    File("0001.$mt") = bytes;
    MailTemplate read{"before", "", ""};
    EXPECT_EQ(store.Read(1, read), readable ? FileOutcome::kOk : FileOutcome::kFailed) << name;
    EXPECT_TRUE(read == (readable ? MailTemplate{"a", "b", "c"} : MailTemplate{"before", "", ""})) << name;
    EXPECT_EQ(store.List().size(), readable ? 1u : 0u) << name;
  }
}

TEST_F(TemplateStoreTest, WhatCountsAsATemplateFile) {
  for (const char* name : {"$mt.index", "$mt.Tree", "0006.$MT", "0006.$mt.new", "0007.$mtx", "0008$mt",
                           "0012.$mt", "12.$mt", "表.$mt"})
    File(name) = "\1a\1b\1c";
  EXPECT_EQ(store.Numbers(), (std::vector<int>{6, 12, 0}));
  EXPECT_TRUE(store.List() == (std::vector<NamedTemplate>{{12, "a"}}));  // the others' own files are missing
  EXPECT_TRUE(TemplateStore(files, "").Numbers().empty());
}

TEST_F(TemplateStoreTest, NextNumber) {
  const std::tuple<std::string, int, std::string> cases[] = {
      {"8", 9, "9"},   {"0099\r\n5", 100, "100"}, {"", 1, "1"},
      {"表9", 1, "1"}, {" 12abc", 13, "13"},      {"2147483647", 0, "2147483647"}};
  for (const auto& [index, next, after] : cases) {
    File("$mt.index") = index;
    EXPECT_EQ(store.NextNumber(), next) << index;
    EXPECT_EQ(File("$mt.index"), after);
  }
  files.failing = os::testing::FakeStep::kRename;
  File("$mt.index") = "8";
  EXPECT_EQ(store.NextNumber(), 0);
  EXPECT_EQ(File("$mt.index"), "8");
  files.failing = {};
  files.contents.clear();
  EXPECT_EQ(store.NextNumber(), 0);
  EXPECT_TRUE(files.contents.empty());
}

TEST_F(TemplateStoreTest, EveryChangeIsMadeUnderTheLock) {
  File("$mt.index") = "1";
  int changes = 0;
  files.beforeRename = [&] { changes += files.locksHeld; };
  EXPECT_EQ(store.Write(1, {}), FileOutcome::kOk);
  EXPECT_EQ(store.NextNumber(), 2);
  EXPECT_EQ(store.WriteTreeFile("0001\r\n"), FileOutcome::kOk);
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(files.locksHeld, 0);
  files.failing = os::testing::FakeStep::kLock;
  files.failure = FileOutcome::kBusy;
  EXPECT_EQ(store.Write(1, {"x", "", ""}), FileOutcome::kBusy);
  EXPECT_EQ(store.Delete(1), FileOutcome::kBusy);
  EXPECT_EQ(File("0001.$mt"), "\0\0\0"s);
}

}  // namespace
}  // namespace kova::mail
