#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace kova::mail {

/// When a patient last logged in to the application, and about how long ago: "2024-1-1 00:00:00  (最近)".
///
/// A short stamp counts as filled up with zeros, a long one as cut. The days are those of the local calendar,
/// counted from the beginning of the stamp's day. Nothing when the stamp holds no date: a year below 1900, a
/// month outside 1 to 12, a day outside 1 to 31. A day beyond the month's end counts on into the next one.
///
/// @param stamp  YYYYMMDDhhmmss; empty gives the empty text
/// @param now    local time
std::optional<std::string> LastLoginText(std::string_view stamp, const std::tm& now);

}  // namespace kova::mail
