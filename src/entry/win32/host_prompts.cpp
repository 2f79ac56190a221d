#include "entry/host_prompts.h"

#include "window/message_prompts.h"

namespace kova::entry {

bool HostPrompts::AskYesNo(std::string_view text) { return window::MessagePrompts().AskYesNo(text); }

void HostPrompts::Inform(std::string_view text) { window::MessagePrompts().Inform(text); }

}  // namespace kova::entry
