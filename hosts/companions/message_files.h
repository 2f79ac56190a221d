#pragma once

// Finished mails that lie in files.

#include <string>
#include <string_view>

#include "hosts/companions/command_line.h"

namespace kova::companions {

/// True when `content` begins with the head of a mail: fields "Name: text" up to an empty line or the end,
/// one of them saying who it goes to.
bool IsMessage(std::string_view content);

/// Keeps the mail files that the command names in `folder`: one file, the ".eml" files of a folder, or the
/// files that fit a pattern in the name. Where they are not to be kept, they are removed once all are filed.
/// Throws CompanionError when there is none, when one is no mail (nothing is filed then), or when something cannot
/// be done.
void KeepMessageFiles(const EmlCommand& command, const std::string& folder);

}  // namespace kova::companions
