#pragma once

// The map of patients from its files in the program's folder: "PostGeo.csv" and "map_tmp.htm" in, "map.htm"
// out.

#include <string>
#include <string_view>
#include <vector>

#include "foundation/progress.h"
#include "platform/os/files.h"
#include "postal/post_table.h"

namespace kova::postal {

/// "InitPostList": fills the empty table. False only when the user stopped it; a file that cannot be read
/// leaves the table empty.
bool LoadPostTable(os::Files& files, std::string_view programFolder, PostTable& table,
                   foundation::Progress& progress);

struct MapResult {
  enum class Outcome { kWritten, kStopped, kFailed };
  Outcome outcome = Outcome::kFailed;
  std::string file;  // the page, or the file that could not be read or written
  os::FileOutcome why = os::FileOutcome::kOk;
};

/// "CallPostMap" but for showing the page: the page of the table's counts, whole or not at all.
MapResult WriteMap(os::Files& files, std::string_view programFolder, const PostTable& table,
                   foundation::Progress& progress);

/// "CallPostToMap" but for showing the page: loads the table when it is empty, counts the patients' codes,
/// writes the page. Whatever happens, the table's counts are 0 afterwards.
MapResult MakePatientMap(os::Files& files, std::string_view programFolder, PostTable& table,
                         const std::vector<std::string>& codes, foundation::Progress& progress);

}  // namespace kova::postal
