#include "platform/os/input_method.h"

#include <windows.h>
// windows.h first
#include <imm.h>

#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

class Context {
 public:
  explicit Context(HWND window) : window_(window), context_(ImmGetContext(window)) {}
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  ~Context() {
    if (context_ != nullptr) ImmReleaseContext(window_, context_);
  }
  bool Valid() const { return context_ != nullptr; }

  /// One of the composition's texts in code page 932; empty when there is none.
  std::string Text(DWORD which) const {
    const LONG bytes = ImmGetCompositionStringW(context_, which, nullptr, 0);
    if (bytes <= 0) return {};
    std::wstring wide(static_cast<std::size_t>(bytes) / sizeof(wchar_t), L'\0');
    const LONG got = ImmGetCompositionStringW(context_, which, wide.data(), static_cast<DWORD>(bytes));
    if (got <= 0) return {};
    wide.resize(static_cast<std::size_t>(got) / sizeof(wchar_t));
    std::string text;
    for (const wchar_t unit : wide) {
      std::string one;
      text += text932::FromUtf16(std::u16string(1, static_cast<char16_t>(unit)), one) ? one : "?";
    }
    return text;
  }

 private:
  HWND window_;
  HIMC context_;
};

class SystemMethod final : public InputMethod {
 public:
  std::optional<CommittedInput> Committed(void* window) override {
    const Context context(static_cast<HWND>(window));
    if (!context.Valid()) return std::nullopt;
    CommittedInput input{context.Text(GCS_RESULTSTR), context.Text(GCS_RESULTREADSTR)};
    if (input.text.empty() && input.reading.empty()) return std::nullopt;
    return input;
  }
};

}  // namespace

InputMethod& SystemInputMethod() {
  static SystemMethod method;
  return method;
}

}  // namespace kova::os
