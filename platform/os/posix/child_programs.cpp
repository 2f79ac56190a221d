#include "platform/os/child_programs.h"

#include <fcntl.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/os/clock.h"
#include "platform/os/posix/native_path.h"
#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

// The other system's limit holds here as well, so that both builds give the same answer.
constexpr std::size_t kLongestLine = 32767;
constexpr int kPause = 5;  // milliseconds

// Everything the child could inherit is closed; its standard streams lead nowhere.
class NoInheritance {
 public:
  NoInheritance() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, 1, 2);
    posix_spawn_file_actions_addclosefrom_np(&actions_, 3);
  }
  NoInheritance(const NoInheritance&) = delete;
  NoInheritance& operator=(const NoInheritance&) = delete;
  ~NoInheritance() { posix_spawn_file_actions_destroy(&actions_); }
  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

// The program up to the first blank, the rest of the line as its one argument: this system hands over a list
// of texts instead of a line.
std::optional<pid_t> Start(std::string_view line) {
  const std::size_t blank = line.find(' ');
  std::string program = NativePath(line.substr(0, blank));
  std::string rest(blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1));
  char* const argv[] = {program.data(), rest.data(), nullptr};
  const NoInheritance actions;
  pid_t child = 0;
  if (posix_spawn(&child, program.c_str(), actions.Get(), nullptr, argv, environ) != 0) return std::nullopt;
  return child;
}

// The child's end when it has ended; nothing while it runs.
std::optional<ChildResult> EndOf(pid_t child, int options) {
  int status = 0;
  const pid_t ended = ::waitpid(child, &status, options);
  if (ended == 0 || (ended < 0 && errno == EINTR)) return std::nullopt;
  if (ended < 0) return ChildResult{ChildOutcome::kFailed, 0};
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 0x100 + WTERMSIG(status);
  return ChildResult{ChildOutcome::kExited, static_cast<std::uint32_t>(code)};
}

// A child that was left running must be waited for some day, or its entry stays in the system's table for as
// long as this process lives. A thread of no further use does that.
void ReapLater(pid_t child) {
  const auto wait = [](void* argument) -> void* {
    while (!EndOf(static_cast<pid_t>(reinterpret_cast<std::intptr_t>(argument)), 0)) {
    }
    return nullptr;
  };
  pthread_t thread;
  void* const argument = reinterpret_cast<void*>(static_cast<std::intptr_t>(child));
  if (pthread_create(&thread, nullptr, wait, argument) == 0) pthread_detach(thread);
}

class PosixChildPrograms final : public ChildPrograms {
 public:
  ChildResult Run(std::string_view commandLine, int limit) override {
    if (commandLine.empty() || commandLine.find('\0') != std::string_view::npos ||
        text932::ToUtf16(commandLine).size() >= kLongestLine)
      return {ChildOutcome::kNotStarted, 0};
    const std::optional<pid_t> child = Start(commandLine);
    if (!child) return {ChildOutcome::kNotStarted, 0};
    const std::int64_t end = MonotonicMilliseconds() + limit;
    for (;;) {
      if (const auto result = EndOf(*child, WNOHANG)) return *result;
      if (MonotonicMilliseconds() >= end) break;
      SleepMilliseconds(kPause);
    }
    ReapLater(*child);
    return {ChildOutcome::kStillRunning, 0};
  }
};

}  // namespace

bool StartProgram(std::string_view program, std::span<const std::string> arguments) {
  std::vector<std::string> words = {NativePath(program)};
  for (const std::string& each : arguments) words.push_back(text932::ToUtf8(each));
  std::vector<char*> argv;
  for (std::string& each : words) argv.push_back(each.data());
  argv.push_back(nullptr);
  const NoInheritance actions;
  pid_t child = 0;
  if (posix_spawn(&child, argv.front(), actions.Get(), nullptr, argv.data(), environ) != 0) return false;
  ReapLater(child);
  return true;
}

ChildPrograms& RealChildPrograms() {
  static PosixChildPrograms programs;
  return programs;
}

}  // namespace kova::os
