#include "entry/host_prompts.h"

namespace kova::entry {

bool HostPrompts::AskYesNo(std::string_view) { return false; }

void HostPrompts::Inform(std::string_view) {}

}  // namespace kova::entry
