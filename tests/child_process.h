#pragma once

// A child process of a test: this very program with other arguments, or another one.

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/text932/cp932.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <signal.h>
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
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process)) {
      CloseHandle(process.hThread);
      process_ = process.hProcess;
    }
#else
    process_ = fork();
    if (process_ == 0) {
      std::vector<char*> argv;
      std::string name = program.string();
      argv.push_back(name.data());
      std::vector<std::string> copies = arguments;
      for (std::string& copy : copies) argv.push_back(copy.data());
      argv.push_back(nullptr);
      execv(name.c_str(), argv.data());
      _exit(127);
    }
#endif
  }
  ~ChildProcess() {
    if (process_ != Process{}) Kill();
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Waits for its end; its exit code, -1 when it did not end by itself.
  int Wait() {
    if (process_ == Process{}) return -1;
#ifdef _WIN32
    DWORD code = 1;
    WaitForSingleObject(process_, INFINITE);
    GetExitCodeProcess(process_, &code);
    CloseHandle(process_);
    const int result = code == kKilled ? -1 : static_cast<int>(code);
#else
    int status = 0;
    waitpid(process_, &status, 0);
    const int result = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
    process_ = {};
    return result;
  }

  /// Ends it as a crash or a power cut would.
  void Kill() {
    if (process_ == Process{}) return;
#ifdef _WIN32
    TerminateProcess(process_, kKilled);
#else
    kill(process_, SIGKILL);
#endif
    Wait();
  }

 private:
#ifdef _WIN32
  using Process = HANDLE;
  static constexpr DWORD kKilled = 0x4B494C4C;
#else
  using Process = pid_t;
#endif
  Process process_{};
};

}  // namespace kova::testing
