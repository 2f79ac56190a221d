#include "hosts/console/console.h"

#include <charconv>
#include <cstdio>
#include <filesystem>

#include "platform/text932/cp932.h"

#ifdef _WIN32
// shellapi.h wants windows.h first.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <fcntl.h>
#include <io.h>
#endif

namespace kova::hosts {
namespace {

#ifdef _WIN32

std::string Utf8Of(const wchar_t* wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 1) return {};
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8.data(), size, nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

// The C runtime's own arguments went through the system's code page; the wide ones did not.
std::vector<std::string> Arguments(int, char**) {
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) arguments.push_back(Utf8Of(wide[i]));
  LocalFree(wide);
  return arguments;
}

// A console window shows UTF-8 while the program runs; a file or pipe gets the bytes without line-end
// changes.
class Utf8Output {
 public:
  Utf8Output() : before_(GetConsoleOutputCP()) {
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
  }
  ~Utf8Output() {
    std::fflush(stdout);
    if (before_ != 0) SetConsoleOutputCP(before_);
  }
  Utf8Output(const Utf8Output&) = delete;
  Utf8Output& operator=(const Utf8Output&) = delete;

 private:
  UINT before_;
};

#else

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + (argc > 0 ? 1 : 0), argv + argc}; }

class Utf8Output {
 public:
  Utf8Output() {}
};

#endif

constexpr char32_t kPictures = 0x2400;       // of 0x00 to 0x1F, in their order
constexpr char32_t kDeletePicture = 0x2421;  // of 0x7F

// The three bytes of a character U+2400 to U+243F.
std::string Picture(char32_t picture) { return {'\xE2', '\x90', static_cast<char>(0x80 | (picture & 0x3F))}; }

// The control character that a picture stands for; -1 for other bytes.
int ControlOfPicture(std::string_view utf8) {
  if (utf8.size() < 3 || utf8[0] != '\xE2' || utf8[1] != '\x90') return -1;
  const char32_t picture = kPictures + (static_cast<unsigned char>(utf8[2]) - 0x80U);
  if (picture == kDeletePicture) return 0x7F;
  const bool control = picture > kPictures && picture < kPictures + 0x20;
  return control ? static_cast<int>(picture - kPictures) : -1;
}

}  // namespace

int RunConsole(std::string_view name, int argc, char** argv, Program program) {
  const Utf8Output output;
  try {
    const int code = program(Arguments(argc, argv));
    if (std::fflush(stdout) != 0) throw UsageError("the output cannot be written");
    return code;
  } catch (const std::exception& error) {
    std::fflush(stdout);
    PrintError(std::string(name) + ": " + error.what() + "\n");
    return kUsageExitCode;
  }
}

void Print(std::string_view utf8) {
  if (std::fwrite(utf8.data(), 1, utf8.size(), stdout) != utf8.size())
    throw UsageError("the output cannot be written");
}

void PrintError(std::string_view utf8) { (void)std::fwrite(utf8.data(), 1, utf8.size(), stderr); }

std::string ShowControls(std::string_view utf8) {
  std::string shown;
  shown.reserve(utf8.size());
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7F) {
      shown += c;
    } else {
      shown += Picture(byte == 0x7F ? kDeletePicture : kPictures + byte);
    }
  }
  return shown;
}

std::string TextArgument(std::string_view utf8, std::string_view what) {
  std::string plain;
  for (std::size_t at = 0; at < utf8.size();) {
    const int control = ControlOfPicture(utf8.substr(at));
    plain += control >= 0 ? static_cast<char>(control) : utf8[at];
    at += control >= 0 ? 3 : 1;
  }
  std::string text;
  if (!text932::FromUtf8(plain, text))
    throw UsageError(std::string(what) + ": code page 932 cannot hold \"" + ShowControls(utf8) + "\"");
  return text;
}

std::string AbsoluteName(std::string_view utf8) {
  const std::filesystem::path name(std::u8string(utf8.begin(), utf8.end()));
  const std::u8string absolute = std::filesystem::absolute(name).lexically_normal().u8string();
  return {absolute.begin(), absolute.end()};
}

long long NumberArgument(std::string_view utf8, std::string_view what, long long least, long long most) {
  long long number = 0;
  const char* end = utf8.data() + utf8.size();
  const auto [stop, error] = std::from_chars(utf8.data(), end, number);
  if (error == std::errc() && stop == end && number >= least && number <= most) return number;
  throw UsageError(std::string(what) + ": \"" + ShowControls(utf8) + "\" is no whole number from " +
                   std::to_string(least) + " to " + std::to_string(most));
}

}  // namespace kova::hosts
