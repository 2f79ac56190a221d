#pragma once

// The folder of the practice's database: choosing it for this workstation, and an empty database for a new
// one.

#include <string>
#include <string_view>

#include "foundation/progress.h"
#include "platform/os/application_profile.h"
#include "platform/os/files.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::practice {

/// The folder as the profile has it; empty when none was chosen.
std::string StoredFolder(const os::ApplicationProfile& profile);

/// How far taking a folder came.
enum class FolderUse {
  kDone,          // stored, and the connection, if there is one, is open on it
  kNoFolder,      // there is no such folder; nothing was done
  kNotStored,     // the profile cannot be written; the connection is as it was
  kNoAccess,      // stored, but its server wants a password, or another one; the connection is closed
  kNotConnected,  // stored, but it cannot be opened; the connection is closed
};

/// Stores `folder`, as it was typed, with a delimiter at its end, and opens the connection anew on it. `db`
/// may be null: then there is nothing to be opened.
[[nodiscard]] FolderUse UseFolder(os::Files& files, os::ApplicationProfile& profile, CKovaDBSys* db,
                                  std::string_view folder);

/// True when the folder holds a database, whatever state it is in.
bool HoldsDatabase(os::Files& files, std::string_view folder);

/// Where the empty database lies that is installed beside the program: the same with and without a delimiter
/// at the end of the program's folder.
std::string EmptyDatabaseFolder(std::string_view programFolder);

/// Copies the empty database into a folder, which is made when missing. A folder that holds a database is
/// left as it is, and so is every file (kChanged). The marker comes last: without it there is no database
/// yet. When it fails or is stopped (kBusy), what was copied is gone again.
[[nodiscard]] os::FileOutcome CopyEmptyDatabase(os::Files& files, std::string_view programFolder,
                                                std::string_view folder, foundation::Progress& progress);

}  // namespace kova::practice
