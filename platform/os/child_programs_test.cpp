// Real child processes: this program starts itself.

#include "platform/os/child_programs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/os/program.h"
#include "platform/os/testing/temporary_folder.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace kova::os {
namespace {

constexpr int kPatience = 30000;  // milliseconds

/// The system's number of what it refused last; 0 where it has none.
unsigned long LastError() {
#ifdef _WIN32
  return GetLastError();
#else
  return 0;
#endif
}

std::string ThisProgram() {
#ifdef _WIN32
  return ProgramFolder() + "child_programs_test.exe";
#else
  return ProgramFolder() + "child_programs_test";
#endif
}

// What the child does: "--child DEED", a blank, and the rest as it is.
int RunChild(std::string_view rest) {
  const std::size_t blank = rest.find(' ');
  const std::string_view deed = rest.substr(0, blank);
  const std::string_view value = blank == std::string_view::npos ? "" : rest.substr(blank + 1);
  if (deed == "exit") return std::atoi(std::string(value).c_str());
  if (deed == "sleep") return SleepMilliseconds(std::atoi(std::string(value).c_str())), 0;
  if (deed == "print") {
    for (int i = 0; i < 1024; ++i) std::fputs(std::string(1024, 'x').c_str(), stdout);
    return 0;
  }
  if (deed == "crash") {
#ifdef _WIN32
    TerminateProcess(GetCurrentProcess(), EXCEPTION_ACCESS_VIOLATION);  // without a debugger's window
#endif
    std::abort();
  }
  const std::size_t bar = value.find('|');
  if (deed != "keep" || bar == std::string_view::npos) return 2;
  return RealFiles().Replace(value.substr(0, bar), value.substr(bar + 1)) == FileOutcome::kOk ? 0 : 3;
}

ChildResult RunDeed(const std::string& deed, int limit = kPatience) {
  return RealChildPrograms().Run(ThisProgram() + " --child " + deed, limit);
}

TEST(ChildPrograms, TellsHowTheChildEnded) {
  for (const int code : {0, 1, 7}) {
    const ChildResult result = RunDeed("exit " + std::to_string(code));
    EXPECT_EQ(result.outcome, ChildOutcome::kExited) << code << ": " << LastError();
    EXPECT_EQ(result.exitCode, static_cast<std::uint32_t>(code));
  }
  const ChildResult crashed = RunDeed("crash");
  EXPECT_EQ(crashed.outcome, ChildOutcome::kExited);
  EXPECT_NE(crashed.exitCode, 0u);
  const ChildResult wordy = RunDeed("print");  // nobody reads it
  EXPECT_EQ(wordy.outcome, ChildOutcome::kExited);
  EXPECT_EQ(wordy.exitCode, 0u);
}

TEST(ChildPrograms, LeavesOneAloneThatGoesOnTooLong) {
  const std::int64_t begin = MonotonicMilliseconds();
  EXPECT_EQ(RunDeed("sleep 4000", 100).outcome, ChildOutcome::kStillRunning);
  EXPECT_GE(MonotonicMilliseconds() - begin, 90);
  EXPECT_LT(MonotonicMilliseconds() - begin, 3500);
}

TEST(ChildPrograms, WhatCannotBeStarted) {
  const auto ofSize = [](std::size_t size, const std::string& filler) {
    std::string line = ThisProgram() + " --child exit 0 ";
    while (line.size() < size) line += filler;
    return line;
  };
  const struct {
    const char* what;
    std::string line;
    ChildOutcome outcome;
  } rows[] = {
      {"missing", "Mail\\NoSuch.exe /TO:x", ChildOutcome::kNotStarted},
      {"empty", "", ChildOutcome::kNotStarted},
      {"a NUL", ThisProgram() + std::string(" --child exit 0\0", 16), ChildOutcome::kNotStarted},
      {"as long as can be", ofSize(32766, "x"), ChildOutcome::kExited},
      {"too long", ofSize(32767, "x"), ChildOutcome::kNotStarted},
      {"much too long", ofSize(200000, "x"), ChildOutcome::kNotStarted},
      {"too long in Japanese", ofSize(66000, "表"), ChildOutcome::kNotStarted},
  };
  for (const auto& row : rows) {
    const ChildResult result = RealChildPrograms().Run(row.line, kPatience);
    EXPECT_EQ(result.outcome, row.outcome) << row.what;
    EXPECT_EQ(result.exitCode, 0u) << row.what;
  }
}

// A system whose own code page is 932 puts a middle dot for half a character and the byte behind it.
std::string AsTheSystemPassesIt(const std::string& value) {
#ifdef _WIN32
  if (GetACP() == 932 && value == "\x83") return "";
  if (GetACP() == 932 && value.starts_with("\x83 ")) return "・" + value.substr(2);
#endif
  return value;
}

TEST(ChildPrograms, TheBytesComeThroughAsTheyAre) {
  const testing::TemporaryFolder folder("child");
  const std::string file = folder.Path() + "kept";
  const std::string rows[] = {
      "plain", " \"one\" 'two' \\\" \\\\ \" ", "a\r\nb\nc\t|d", "%s %1 %PATH% ^& /TO:", "表能ソ ｶﾅ 髙﨑①～",
      "\x83",  "\x83 x\xFF\x80y\xA0",
  };
  for (const std::string& value : rows) {
    SCOPED_TRACE(value);
    const ChildResult result = RunDeed("keep " + file + "|" + value);
    EXPECT_EQ(result.outcome, ChildOutcome::kExited);
    EXPECT_EQ(result.exitCode, 0u);
    std::string kept;
    EXPECT_EQ(RealFiles().Read(file, 1000, kept), FileOutcome::kOk);
    EXPECT_EQ(kept, AsTheSystemPassesIt(value));
  }
}

#ifndef _WIN32
// Where a child takes a list of texts, the rest of the line is its one argument.
std::string_view LineOf(int argc, char** argv) { return argc == 2 ? argv[1] : std::string_view(); }
#else
std::string_view LineOf(int, char**) {
  const std::string_view line = GetCommandLineA();
  return line.substr(std::min(line.find(' '), line.size() - 1) + 1);
}
#endif

}  // namespace
}  // namespace kova::os

int main(int argc, char** argv) {
  constexpr std::string_view kChild = "--child ";
  const std::string_view line = kova::os::LineOf(argc, argv);
  if (line.starts_with(kChild)) return kova::os::RunChild(line.substr(kChild.size()));
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
