#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/os/files.h"
#include "platform/os/retry.h"

namespace kova::os {

/// The largest profile file that is read; a larger one reads as missing and is never written.
inline constexpr std::size_t kProfileFileLimit = std::size_t{256} << 20;

/// Sets `key` of `section` to `value` in the profile file `path`, or removes what has no value
/// (EditProfileText). The file, the section and the key are made as needed; the folder is not.
///
/// Any number of processes may do so at once: each holds the file `path` + ".lock" meanwhile, waiting for it
/// at most five seconds. A program that writes without that lock is noticed up to the moment of the exchange,
/// and the edit made again on what it left, for about two seconds (RetryWhile). On any outcome but kOk the
/// file is as it was; kFailed also for a section or key that cannot be written.
[[nodiscard]] FileOutcome UpdateProfileFile(Files& files, std::string_view path, std::string_view section,
                                            std::optional<std::string_view> key,
                                            std::optional<std::string_view> value,
                                            RetryTiming& timing = SystemRetryTiming());

/// The bytes of the profile file `path` in `content`, which is empty on any outcome but kOk.
[[nodiscard]] FileOutcome ReadProfileFile(Files& files, std::string_view path, std::string& content);

}  // namespace kova::os
