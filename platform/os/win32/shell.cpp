#include "platform/os/shell.h"

#include <windows.h>
#include <shellapi.h>

#include "platform/os/win32/native_path.h"

namespace kova::os {
namespace {

class Win32Shell final : public Shell {
 public:
  bool Open(std::string_view path) override {
    const auto answer = reinterpret_cast<INT_PTR>(
        ShellExecuteW(nullptr, L"open", NativePath(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    return answer > 32;  // up to there it is an error
  }
};

}  // namespace

Shell& RealShell() {
  static Win32Shell shell;
  return shell;
}

}  // namespace kova::os
