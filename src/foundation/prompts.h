#pragma once

// What a decision asks or tells the user while it runs. Texts are code page 932; "\n" breaks a line.

#include <string_view>

namespace kova::foundation {

class Prompts {
 public:
  virtual ~Prompts() = default;

  /// Shows `text` with Yes and No; true for Yes. Where nobody can be asked the answer is No.
  virtual bool AskYesNo(std::string_view text) = 0;

  /// Shows `text` and waits until it is acknowledged.
  virtual void Inform(std::string_view text) = 0;
};

}  // namespace kova::foundation
