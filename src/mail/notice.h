#pragma once

// Notices to patients' smartphone application: one text file each, for the program that delivers them
// (docs/notices.md).

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/os/files.h"

namespace kova::mail {

/// What a notice says. Up to a NUL each.
struct Notice {
  std::string_view applicationId;
  std::string_view title;
  std::string_view body;
};

/// False for the empty ID and for the one that stands for "no application": such a patient gets no notices.
bool HasApplication(std::string_view applicationId);

/// The body without what is meant for patients without the application: from each "$_NOAPPLI" up to the end
/// of its line, the line end included; and without one line end at its end.
std::string NoticeBody(std::string_view body);

/// The file's bytes. `now` is milliseconds since 1970, UTC.
std::string NoticeText(const Notice& notice, std::int64_t now);

/// The file's name without its extension. What cannot stand in a file name becomes "_", so that the file
/// stays in its folder; of a long ID 100 bytes stand in it.
std::string NoticeName(std::string_view applicationId, std::string_view adapterAddress, std::int64_t now);

/// Writes the notice into the folder, which is used as given: its delimiter belongs to it. The file has the
/// extension ".notice_temp" until it is complete, then ".notice". Where a name is taken the next
/// millisecond's is used. On a failure there is no file.
[[nodiscard]] os::FileOutcome WriteNotice(os::Files& files, std::string_view folder, const Notice& notice,
                                          std::string_view adapterAddress, std::int64_t now);

}  // namespace kova::mail
