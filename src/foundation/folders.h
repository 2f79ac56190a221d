#pragma once

// The well-known folders of the installation and of the practice's shared database folder. Folders end in
// "\". An empty text says "not available". Nothing is remembered between calls.

#include <string>
#include <string_view>

#include "platform/os/application_profile.h"
#include "platform/os/files.h"

namespace kova::foundation {

/// The shared database folder of the application profile ("GLOBAL"/"DATABASE"); empty when none is
/// configured.
std::string DatabaseFolder(const os::ApplicationProfile& profile);

/// The folder above the program folder; that of a drive's root is the root itself.
std::string InstallFolder(std::string_view programFolder);

/// "tmp\" in the program folder, made when missing; empty when it cannot be made.
std::string TemporaryFolder(std::string_view programFolder, os::Files& files);

/// "templates\" in the database folder, neither made nor looked for; empty without a database folder.
std::string TemplatesFolder(const os::ApplicationProfile& profile);

/// The profile's "GLOBAL"/"Photo" exactly as stored, not looked at; else "Photo\" in the database folder,
/// made when missing (without a database folder that is "\Photo\"), empty when it cannot be made.
std::string PhotoPath(const os::ApplicationProfile& profile, os::Files& files);

/// PhotoPath, the patient's number right behind it, and "\"; made on request. Empty without a photo path or
/// when it cannot be made.
std::string PatientPhotoFolder(const os::ApplicationProfile& profile, os::Files& files,
                               std::string_view patientId, bool create);

/// The patient's face photo in PatientPhotoFolder; empty when that is.
std::string FacePhotoPath(const os::ApplicationProfile& profile, os::Files& files, std::string_view patientId,
                          bool create);

/// Links to other services that are switched on by a folder in the database folder.
enum class Connection { kGoogle, kWeb, kCheckIn };

/// The folder of a link when it exists; empty when it does not or no database folder is configured.
std::string ConnectionPath(const os::ApplicationProfile& profile, os::Files& files, Connection connection);

}  // namespace kova::foundation
