#pragma once

#include "foundation/prompts.h"

namespace kova::entry {

/// Asks and tells the host's user in message boxes over the host's active window. Where there is no user
/// (outside Windows) the answer is No and nothing is shown.
class HostPrompts final : public foundation::Prompts {
 public:
  bool AskYesNo(std::string_view text) override;
  void Inform(std::string_view text) override;
};

}  // namespace kova::entry
