#include "platform/os/child_programs.h"

#include <windows.h>

#include <string>

#include "platform/os/win32/handle.h"
#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

// The system's own limit, in the UTF-16 code units that it makes of the line, with the NUL behind it.
constexpr int kLongestLine = 32767;

bool CanBeGiven(std::string_view line) {
  if (line.empty() || line.size() > 2U * kLongestLine || line.find('\0') != std::string_view::npos)
    return false;
  const int units = MultiByteToWideChar(CP_ACP, 0, line.data(), static_cast<int>(line.size()), nullptr, 0);
  return units > 0 && units < kLongestLine;
}

ChildResult WaitFor(HANDLE process, int limit) {
  switch (WaitForSingleObject(process, static_cast<DWORD>(limit))) {
    case WAIT_OBJECT_0:
      break;
    case WAIT_TIMEOUT:
      return {ChildOutcome::kStillRunning, 0};
    default:
      return {ChildOutcome::kFailed, 0};
  }
  DWORD code = 0;
  if (!GetExitCodeProcess(process, &code)) return {ChildOutcome::kFailed, 0};
  return {ChildOutcome::kExited, code};
}

class Win32ChildPrograms final : public ChildPrograms {
 public:
  ChildResult Run(std::string_view commandLine, int limit) override {
    if (!CanBeGiven(commandLine)) return {ChildOutcome::kNotStarted, 0};
    std::string line(commandLine);  // the system may write in it
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION information{};
    // The bytes go to the program as they are, so the function that takes bytes is the one to call.
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &information))
      return {ChildOutcome::kNotStarted, 0};
    const Handle process(information.hProcess);
    if (!CloseHandle(information.hThread)) return {ChildOutcome::kFailed, 0};
    return WaitFor(process.Get(), limit);
  }
};

/// As CommandLineToArgvW takes it apart: "\\" is doubled where a quote follows, and a quote has one before it.
void AppendQuoted(std::wstring& line, const std::wstring& argument) {
  line += L" \"";
  std::size_t slashes = 0;
  for (const wchar_t c : argument) {
    if (c == L'"') line.append(slashes + 1, L'\\');
    slashes = c == L'\\' ? slashes + 1 : 0;
    line += c;
  }
  line.append(slashes, L'\\');
  line += L'"';
}

std::wstring Wide(std::string_view text) {
  const std::u16string units = text932::ToUtf16(text);
  return {units.begin(), units.end()};
}

}  // namespace

bool StartProgram(std::string_view program, std::span<const std::string> arguments) {
  std::wstring line = L"\"" + Wide(program) + L"\"";  // a file's name holds no quote
  for (const std::string& each : arguments) AppendQuoted(line, Wide(each));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION information{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &startup, &information))
    return false;
  const Handle process(information.hProcess), thread(information.hThread);
  return true;
}

ChildPrograms& RealChildPrograms() {
  static Win32ChildPrograms programs;
  return programs;
}

}  // namespace kova::os
