#pragma once

#include <string_view>

namespace kova::sample {

/// Writes GLOBALSETTING.ini and app.ini, an application profile that names the folder, into the database
/// folder (code page 932, absolute, with its trailing delimiter). Throws UsageError when that fails.
void WriteSettings(std::string_view folder);

/// Copies the installation's starter set of mail templates into the database folder. False, and nothing is
/// copied, when there is no such set. Throws UsageError when copying fails.
bool CopyTemplates(std::string_view installed, std::string_view folder);

}  // namespace kova::sample
