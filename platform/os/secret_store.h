#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kova::os {

/// Keeps a short secret (a password) for this user of this machine, under a name that may be any text. On Windows it is
/// protected by the system's data protection, so that no other user and no other machine can read it, and lies
/// under the user's local application data; elsewhere it is a file that only the user may read. False when it
/// cannot be kept.
[[nodiscard]] bool StoreSecret(std::string_view name, std::string_view secret);

/// Nothing when none is kept, or it cannot be read.
std::optional<std::string> LoadSecret(std::string_view name);

/// The file that a secret lies in.
std::string SecretFileName(std::string_view name);

}  // namespace kova::os
