#pragma once

// A child process of a test: this very program with other arguments, or another one.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/os/clock.h"
#include "platform/text932/cp932.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace kova::testing {

/// The running program's own executable.
inline std::filesystem::path ThisProgram() {
#ifdef _WIN32
  wchar_t name[4096];
  GetModuleFileNameW(nullptr, name, 4096);
  return name;
#else
  return std::filesystem::read_symlink("/proc/self/exe");
#endif
}

/// A variable of the environment that the children of this process get.
inline void SetVariable(const std::string& name, const std::filesystem::path& value) {
#ifdef _WIN32
  SetEnvironmentVariableW(std::wstring(name.begin(), name.end()).c_str(), value.c_str());
#else
  setenv(name.c_str(), value.c_str(), 1);
#endif
}

/// Says which folder the children of this process work in: a name in any language, so not by their command
/// line.
inline void SetChildFolder(const std::filesystem::path& folder) { SetVariable("KOVA_TEST_FOLDER", folder); }

/// In a child: that folder in code page 932, with its trailing delimiter; empty when none was said.
inline std::string ChildFolder() {
  std::string folder;
#ifdef _WIN32
  wchar_t wide[4096];
  const DWORD length = GetEnvironmentVariableW(L"KOVA_TEST_FOLDER", wide, 4096);
  if (!text932::FromUtf16(std::u16string(wide, wide + length), folder)) folder.clear();
#else
  const char* utf8 = std::getenv("KOVA_TEST_FOLDER");
  if (utf8 == nullptr || !text932::FromUtf8(utf8, folder)) folder.clear();
#endif
  return folder;
}

#ifdef _WIN32
using ProcessHandle = HANDLE;
#else
using ProcessHandle = pid_t;

/// In a child that was just forked: it leads a group of its own and is killed when its parent ends.
inline void BecomeChild() {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
}
#endif

/// A child and what it starts: all of them have ended when Wait or Kill returns or the object is gone, so
/// that none holds a file of a folder that is removed next.
class ChildProcess {
 public:
  /// Arguments of plain words: no blanks, quotes or backslashes.
  explicit ChildProcess(const std::vector<std::string>& arguments) : ChildProcess(ThisProgram(), arguments) {}

  ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
#ifdef _WIN32
    std::wstring line = L"\"" + program.wstring() + L"\"";
    for (const std::string& argument : arguments)
      line += L" " + std::wstring(argument.begin(), argument.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                       nullptr, &startup, &process)) {
      Take(process.hProcess);
      ResumeThread(process.hThread);
      CloseHandle(process.hThread);
    }
#else
    const pid_t process = fork();
    if (process == 0) {
      BecomeChild();
      std::vector<char*> argv;
      std::string name = program.string();
      argv.push_back(name.data());
      std::vector<std::string> copies = arguments;
      for (std::string& copy : copies) argv.push_back(copy.data());
      argv.push_back(nullptr);
      execv(name.c_str(), argv.data());
      _exit(127);
    }
    Take(process);
#endif
  }
  /// Takes over a process that was started, on POSIX one that calls BecomeChild.
  explicit ChildProcess(ProcessHandle process) { Take(process); }
  ~ChildProcess() { Kill(); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Waits for its end, at most five minutes; its exit code, -1 when it did not end by itself.
  int Wait() {
    if (process_ == ProcessHandle{}) return -1;
    if (!HasEnded(300000)) std::fprintf(stderr, "a child process did not end and is killed\n");
    return End();
  }

  /// Ends it as a crash or a power cut would.
  void Kill() {
    if (process_ != ProcessHandle{}) (void)End();
  }

 private:
#ifdef _WIN32
  static constexpr DWORD kKilled = 0x4B494C4C;

  void Take(HANDLE process) {
    process_ = process;
    // When its last handle goes, with this process at the latest, so do the processes in the job.
    job_ = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job_, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    AssignProcessToJobObject(job_, process_);
  }
  bool HasEnded(int limit) const {
    return WaitForSingleObject(process_, static_cast<DWORD>(limit)) == WAIT_OBJECT_0;
  }
  bool IsJobEmpty() const {
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION now{};
    return !QueryInformationJobObject(job_, JobObjectBasicAccountingInformation, &now, sizeof now, nullptr) ||
           now.ActiveProcesses == 0;
  }
  int End() {
    TerminateProcess(process_, kKilled);
    TerminateJobObject(job_, kKilled);
    bool ended = HasEnded(kEndLimit);
    for (int waited = 0; ended && !IsJobEmpty(); waited += 10) {
      ended = waited < kEndLimit;
      Sleep(10);
    }
    if (!ended) std::fprintf(stderr, "a child process cannot be ended\n");
    DWORD code = kKilled;
    GetExitCodeProcess(process_, &code);
    CloseHandle(job_);
    CloseHandle(process_);
    process_ = {};
    return code == kKilled || code == STILL_ACTIVE ? -1 : static_cast<int>(code);
  }

  HANDLE job_ = nullptr;
#else
  void Take(pid_t process) {
    process_ = process;
    if (process > 0) setpgid(process, process);  // as the child does: whoever is first
  }
  // It stays a zombie, so that nobody else gets its number meanwhile.
  bool HasEnded(int limit) const {
    const std::int64_t deadline = os::MonotonicMilliseconds() + limit;
    for (;;) {
      siginfo_t end{};
      if (waitid(P_PID, static_cast<id_t>(process_), &end, WEXITED | WNOHANG | WNOWAIT) != 0 ||
          end.si_pid != 0)
        return true;
      if (os::MonotonicMilliseconds() >= deadline) return false;
      os::SleepMilliseconds(1);
    }
  }
  int End() {
    int status = SIGKILL;
    if (process_ > 0) {
      kill(-process_, SIGKILL);
      kill(process_, SIGKILL);
      if (!HasEnded(kEndLimit) || waitpid(process_, &status, WNOHANG) != process_)
        std::fprintf(stderr, "a child process cannot be ended\n");
    }
    process_ = {};
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
#endif
  static constexpr int kEndLimit = 10000;  // milliseconds

  ProcessHandle process_{};
};

}  // namespace kova::testing
