#include "platform/recordstore/administration.h"

#include <exception>

#include "platform/os/drives.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/migration.h"
#include "platform/recordstore/odbc/dialect.h"
#include "platform/recordstore/odbc/server_layout.h"
#include "platform/recordstore/sqlite/backup.h"
#include "platform/text932/cp932.h"

using kova::store::Result;

int KovaCreateDatabase(const char* folder, std::string* problem) try {
  const std::string_view name = folder == nullptr ? "" : folder;
  std::string unused;
  return static_cast<int>(kova::store::CreateDatabase(name, kova::os::IsRemoteFolder(name),
                                                      problem == nullptr ? unused : *problem));
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaShareDatabase(const char* folder) try {
  // What the first machine does that opens it over a network.
  Result result = Result::kFailed;
  std::string problem;
  (void)kova::store::OpenEngine(folder == nullptr ? "" : folder, true, result, problem);
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaDescribeServer(const char* folder, std::string& text) try {
  const std::string_view name = folder == nullptr ? "" : folder;
  kova::store::ServerSettings settings;
  if (!kova::store::HasServerFile(name)) return static_cast<int>(Result::kNoDatabase);
  std::string problem;
  const Result result = kova::store::ReadServerFile(name, settings, problem);
  text = settings.kind;
  for (const kova::store::ServerAddress& host : settings.hosts)
    text += (&host == settings.hosts.data() ? " " : ", ") + host.Text();
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaStoreServerPassword(const char* folder, const char* password) try {
  if (folder == nullptr || password == nullptr) return static_cast<int>(Result::kBadArgument);
  return static_cast<int>(kova::store::StoreServerPassword(folder, password));
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaUpgradeDatabase(const char* folder, std::string* problem) try {
  const std::string_view name = folder == nullptr ? "" : folder;
  kova::store::ServerSettings settings;
  std::string said;
  Result result = Result::kFailed;
  if (kova::store::HasServerFile(name)) {
    result = kova::store::ReadServerSettings(name, settings, said);
    if (result == Result::kDone) result = kova::store::UpgradeServerDatabase(settings, said);
  } else {
    // A file is upgraded by whoever opens it.
    (void)kova::store::OpenEngine(name, kova::os::IsRemoteFolder(name), result, said);
  }
  if (problem != nullptr) *problem = said;
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaServerRights(const char* folder, std::string& sql) try {
  const std::string_view name = folder == nullptr ? "" : folder;
  kova::store::ServerSettings settings;
  std::string problem;
  if (!kova::store::HasServerFile(name)) return static_cast<int>(Result::kNoDatabase);
  const Result result = kova::store::ReadServerFile(name, settings, problem);
  if (result == Result::kDone) sql = kova::store::MakeDialect(settings.kind)->RightsSql(settings);
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaMigrate(const char* from, const char* to,
                const std::function<bool(const char* what, const char* table, long long records)>& progress,
                std::string& problem) try {
  if (from == nullptr || to == nullptr) return static_cast<int>(Result::kBadArgument);
  const auto tell = [&](const kova::store::MigrationStep& step) {
    return !progress || progress(std::string(step.what).c_str(), std::string(step.table).c_str(), step.records);
  };
  return static_cast<int>(kova::store::Migrate(from, to, tell, problem));
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaBackUp(const char* folder, const char* backups, const std::function<bool()>& goOn, std::string& made,
               std::string& problem) try {
  made.clear();
  problem.clear();
  if (folder == nullptr || backups == nullptr) return static_cast<int>(Result::kBadArgument);
  if (kova::store::HasServerFile(folder)) {
    problem = "the records are on a server: it is backed up by its own program";
    return static_cast<int>(Result::kBadArgument);
  }
  if (kova::os::RealFiles().Kind(backups) != kova::os::PathKind::kFolder) {
    problem = "there is no folder " + kova::text932::ToUtf8(backups);
    return static_cast<int>(Result::kNoDatabase);
  }
  made = kova::os::JoinPath(backups, kova::store::NameOfNow("kova-"));
  const Result result = kova::store::BackUpSqlite(folder, kova::os::IsRemoteFolder(folder), made,
                                                  goOn ? goOn : [] { return true; }, problem);
  if (result != Result::kDone) made.clear();
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaRestore(const char* backup, const char* folder, std::string& kept, std::string& problem) try {
  problem.clear();
  if (backup == nullptr || folder == nullptr || *folder == 0) return static_cast<int>(Result::kBadArgument);
  if (kova::store::HasServerFile(folder)) {
    problem = "the records of that folder are on a server";
    return static_cast<int>(Result::kBadArgument);
  }
  return static_cast<int>(kova::store::RestoreSqlite(backup, folder, kept, problem));
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int KovaSalvage(const char* damaged, const char* to, std::string& report, std::string& problem) try {
  report.clear();
  problem.clear();
  if (damaged == nullptr || to == nullptr) return static_cast<int>(Result::kBadArgument);
  std::vector<kova::store::SalvagedTable> tables;
  const Result result = kova::store::SalvageSqlite(damaged, to, tables, problem);
  for (const kova::store::SalvagedTable& table : tables) {
    report += std::string(table.name) + ": " + std::to_string(table.saved) + " saved, " + std::to_string(table.lost) + " lost" +
              (table.isWhole ? "" : ", and how many more cannot be told");
    for (const std::string& key : table.lostKeys) report += (&key == table.lostKeys.data() ? ": " : ", ") + key;
    report += table.lost > static_cast<long long>(table.lostKeys.size()) ? ", ...\n" : "\n";
  }
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}
