#include "practice/database_folder.h"

#include "foundation/folders.h"
#include "platform/os/paths.h"
#include "platform/toollib/tools.h"

namespace kova::practice {
namespace {

constexpr std::string_view kMarker = "INDEXCONTROL.BTR";
constexpr std::string_view kServerFile = "kova.server";
constexpr std::string_view kTemplate = "KovaEmptyDB\\";
constexpr char kSection[] = "GLOBAL";
constexpr char kKey[] = "DATABASE";
constexpr int kKeepExisting = 1;

}  // namespace

std::string StoredFolder(const os::ApplicationProfile& profile) {
  return profile.GetString(kSection, kKey, "");
}

FolderUse UseFolder(os::Files& files, os::ApplicationProfile& profile, CKovaDBSys* db,
                    std::string_view folder) {
  const std::string path = CTools::LastDelimAdd(folder);
  if (files.Kind(path) != os::PathKind::kFolder) return FolderUse::kNoFolder;
  if (!profile.WriteString(kSection, kKey, path)) return FolderUse::kNotStored;
  if (db == nullptr) return FolderUse::kDone;
  db->CloseDB();
  const int result = db->OpenDB(path.c_str());
  if (result == 0) return FolderUse::kDone;
  db->CloseDB();
  return result == static_cast<int>(store::Result::kNoAccess) ? FolderUse::kNoAccess : FolderUse::kNotConnected;
}

bool HoldsDatabase(os::Files& files, std::string_view folder) {
  const std::string path = CTools::LastDelimAdd(folder);
  return files.Kind(path + std::string(kMarker)) != os::PathKind::kNothing ||
         files.Kind(path + std::string(kServerFile)) != os::PathKind::kNothing;
}

std::string EmptyDatabaseFolder(std::string_view programFolder) {
  return os::AddTrailingDelimiter(foundation::InstallFolder(programFolder)).append(kTemplate);
}

os::FileOutcome CopyEmptyDatabase(os::Files& files, std::string_view programFolder, std::string_view folder,
                                  foundation::Progress& progress) {
  const std::string target = CTools::LastDelimAdd(folder);
  if (target.empty()) return os::FileOutcome::kNotThere;
  if (HoldsDatabase(files, target)) return os::FileOutcome::kChanged;
  progress.Begin("空のデータベースを作成しています");
  return CTools::DirectoryCopy(files, EmptyDatabaseFolder(programFolder), target, kKeepExisting,
                               {kMarker, [&](double done) { return progress.Report(done); }});
}

}  // namespace kova::practice
