#pragma once

// Runs one of the project's programs to its end and keeps what it printed; nothing that it started goes on.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/os/testing/temporary_folder.h"
#include "tests/child_process.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#endif

namespace kova::testing {

struct ProgramRun {
  int code = -1;
  std::string out;  ///< as it was written, byte for byte
  std::string err;
};

inline std::string FileContent(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// A program that the build has made, beside or near the running test.
inline std::filesystem::path BuiltProgram(const std::string& name) {
#ifdef _WIN32
  return ThisProgram().parent_path() / (name + ".exe");
#else
  return ThisProgram().parent_path().parent_path() / "bin" / name;
#endif
}

/// One of the suite's companion programs; it has the same name in both builds.
inline std::filesystem::path BuiltCompanion(const std::string& name) {
  return BuiltProgram("kovacall").parent_path() / "Option" / (name + ".exe");
}

#ifdef _WIN32

inline std::wstring Utf16(const std::string& utf8) {
  std::wstring wide(utf8.size(), L'\0');  // never more units than bytes
  wide.resize(static_cast<std::size_t>(MultiByteToWideChar(
      CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), static_cast<int>(wide.size()))));
  return wide;
}

/// Quotes an argument without a quotation mark in it.
inline std::wstring QuotedArgument(const std::string& argument) {
  std::wstring wide = Utf16(argument);
  const std::size_t backslashes = wide.size() - (wide.find_last_not_of(L'\\') + 1);
  return L"\"" + wide + std::wstring(backslashes, L'\\') + L"\"";
}

inline int RunInto(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   const std::filesystem::path& out, const std::filesystem::path& err) {
  std::vector<std::wstring> texts = {L"\"" + program.wstring() + L"\""};
  for (const std::string& argument : arguments) texts.push_back(QuotedArgument(argument));
  std::vector<const wchar_t*> argv;
  for (const std::wstring& text : texts) argv.push_back(text.c_str());
  argv.push_back(nullptr);
  std::fflush(nullptr);
  const int keptOut = _dup(1);
  const int keptErr = _dup(2);
  const int mode = _O_CREAT | _O_TRUNC | _O_WRONLY | _O_BINARY;
  const int outFile = _wopen(out.c_str(), mode, _S_IREAD | _S_IWRITE);
  const int errFile = _wopen(err.c_str(), mode, _S_IREAD | _S_IWRITE);
  _dup2(outFile, 1);
  _dup2(errFile, 2);
  // -1: it did not start, which happens to one process in some hundreds under Wine on a machine that is busy.
  int code = -1;
  for (int attempt = 0; attempt < 3 && code == -1; ++attempt) {
    const intptr_t process = _wspawnv(_P_NOWAIT, program.c_str(), argv.data());
    if (process != -1) code = ChildProcess(reinterpret_cast<ProcessHandle>(process)).Wait();
  }
  _dup2(keptOut, 1);
  _dup2(keptErr, 2);
  for (const int each : {keptOut, keptErr, outFile, errFile}) _close(each);
  return code;
}

#else

inline int RunInto(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   const std::filesystem::path& out, const std::filesystem::path& err) {
  std::vector<std::string> texts = {program.string()};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& text : texts) argv.push_back(text.data());
  argv.push_back(nullptr);
  const pid_t process = fork();
  if (process == 0) {
    BecomeChild();
    const int mode = O_CREAT | O_TRUNC | O_WRONLY;
    dup2(open(out.c_str(), mode, 0600), 1);
    dup2(open(err.c_str(), mode, 0600), 2);
    execv(argv.front(), argv.data());
    _exit(127);
  }
  return ChildProcess(process).Wait();
}

#endif

/// Arguments are UTF-8.
inline ProgramRun RunProgram(const std::filesystem::path& program,
                             const std::vector<std::string>& arguments) {
  const os::testing::TemporaryFolder folder("run");
  const std::filesystem::path out = folder.Native() / "out";
  const std::filesystem::path err = folder.Native() / "err";
  const int code = RunInto(program, arguments, out, err);
  return {code, FileContent(out), FileContent(err)};
}

}  // namespace kova::testing
