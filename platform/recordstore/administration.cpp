#include "platform/recordstore/administration.h"

#include <exception>

#include "platform/os/drives.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/migration.h"
#include "platform/recordstore/odbc/dialect.h"
#include "platform/recordstore/odbc/server_layout.h"

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
