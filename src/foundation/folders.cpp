#include "foundation/folders.h"

#include "platform/os/paths.h"
#include "platform/text932/cp932.h"

namespace kova::foundation {
namespace {

constexpr std::string_view kSection = "GLOBAL";

// Unlike AddTrailingDelimiter, an empty folder becomes the root: callers rely on it.
std::string WithDelimiter(std::string folder) {
  if (!text932::EndsWith(folder, '\\')) folder += '\\';
  return folder;
}

std::string MadeOrEmpty(std::string folder, os::Files& files) {
  if (files.MakeFolders(folder) != os::FileOutcome::kOk) return {};
  return folder;
}

// Folder names in the database folder; other programs look for them. Do not change.
std::string_view FolderName(Connection connection) {
  switch (connection) {
    case Connection::kGoogle:
      return "EntryToGoogle";
    case Connection::kWeb:
      return "EntryToWeb";
    case Connection::kCheckIn:
      return "CheckIn";
  }
  return {};
}

}  // namespace

std::string DatabaseFolder(const os::ApplicationProfile& profile) {
  return os::AddTrailingDelimiter(profile.GetString(kSection, "DATABASE", ""));
}

std::string InstallFolder(std::string_view programFolder) {
  const std::string_view inner = os::DropTrailingDelimiter(programFolder);
  const std::size_t last = text932::FindLast(inner, '\\');
  return WithDelimiter(std::string(last == std::string_view::npos ? inner : inner.substr(0, last + 1)));
}

std::string TemporaryFolder(std::string_view programFolder, os::Files& files) {
  return MadeOrEmpty(WithDelimiter(std::string(programFolder)) + "tmp\\", files);
}

std::string TemplatesFolder(const os::ApplicationProfile& profile) {
  const std::string database = DatabaseFolder(profile);
  return database.empty() ? "" : database + "templates\\";
}

std::string PhotoPath(const os::ApplicationProfile& profile, os::Files& files) {
  std::string configured = profile.GetString(kSection, "Photo", "");
  if (!configured.empty()) return configured;
  return MadeOrEmpty(WithDelimiter(profile.GetString(kSection, "DATABASE", "")) + "Photo\\", files);
}

std::string PatientPhotoFolder(const os::ApplicationProfile& profile, os::Files& files,
                               std::string_view patientId, bool create) {
  std::string folder = PhotoPath(profile, files);
  if (folder.empty()) return {};
  folder.append(patientId).append("\\");
  return create ? MadeOrEmpty(std::move(folder), files) : folder;
}

std::string FacePhotoPath(const os::ApplicationProfile& profile, os::Files& files, std::string_view patientId,
                          bool create) {
  const std::string folder = PatientPhotoFolder(profile, files, patientId, create);
  return folder.empty() ? ""
                        : folder + "0000000000.jpg";  // one name for all: the folder tells patients apart
}

std::string ConnectionPath(const os::ApplicationProfile& profile, os::Files& files, Connection connection) {
  const std::string database = DatabaseFolder(profile);
  if (database.empty()) return {};
  const std::string path = database + std::string(FolderName(connection));
  return files.Kind(path) == os::PathKind::kNothing ? "" : os::AddTrailingDelimiter(path);
}

}  // namespace kova::foundation
