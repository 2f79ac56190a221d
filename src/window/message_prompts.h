#pragma once

#include <windows.h>

#include <string>

#include "foundation/prompts.h"

namespace kova::window {

/// Prompts as message boxes over a window; over the thread's active window when that is null.
class MessagePrompts final : public foundation::Prompts {
 public:
  explicit MessagePrompts(HWND owner = nullptr) : owner_(owner) {}

  bool AskYesNo(std::string_view text) override;
  void Inform(std::string_view text) override;

  /// Tells of a failure.
  void Fail(std::string_view text) const;
  /// As AskYesNo, where No is what Enter gives.
  [[nodiscard]] bool Confirm(std::string_view text) const;

  /// Names characters that code page 932 lacks, and so has a text that the others cannot be given.
  void Warn(const std::wstring& text) const { Show(text, MB_OK | MB_ICONWARNING); }

 private:
  int Show(const std::wstring& text, UINT style) const;

  HWND owner_;
};

class Dialog;

/// Prompts over a dialog, whatever window it has by the time that something is asked.
class DialogPrompts final : public foundation::Prompts {
 public:
  /// `dialog` must outlive it.
  explicit DialogPrompts(const Dialog& dialog) : dialog_(dialog) {}

  bool AskYesNo(std::string_view text) override;
  void Inform(std::string_view text) override;

 private:
  const Dialog& dialog_;
};

}  // namespace kova::window
