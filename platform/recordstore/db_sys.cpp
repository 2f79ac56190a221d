#include "platform/recordstore/db_sys.h"

#include <new>
#include <utility>

#include "platform/os/drives.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/migration.h"
#include "platform/recordstore/odbc/dialect.h"
#include "platform/recordstore/odbc/server_layout.h"

using kova::store::Engine;
using kova::store::Result;

CKovaDBSys::CKovaDBSys() : place_(std::make_shared<CKovaDBSys*>(this)) {}

CKovaDBSys::~CKovaDBSys() {
  CloseDB();
  *place_ = nullptr;
}

int CKovaDBSys::OpenDB(const char* folder) try {
  CloseDB();
  problem_.clear();
  Result result = Result::kFailed;
  const std::string_view name = folder == nullptr ? "" : folder;
  engine_ = kova::store::OpenEngine(name, kova::os::IsRemoteFolder(name), result, problem_);
  return static_cast<int>(result);
} catch (const std::exception&) {
  CloseDB();
  return static_cast<int>(Result::kFailed);
}

void CKovaDBSys::CloseDB() {
  ++generation_;
  kept_.clear();
  engine_.reset();
}

int CKovaDBSys::IsOpen() const { return engine_ != nullptr ? 1 : 0; }

CKovaKept* CKovaDBSys::GetKept(const char* name) const {
  const auto found = kept_.find(name);
  return found == kept_.end() ? nullptr : found->second.get();
}

void CKovaDBSys::SetKept(const char* name, CKovaKept* kept) { kept_[name].reset(kept); }

int CKovaDBSys::GetChangeStamp(std::initializer_list<kova::store::TableId> tables, long long& stamp) try {
  std::int64_t sum = 0;
  const Result result =
      engine_ == nullptr ? Result::kNotOpen : engine_->ChangeStamps({tables.begin(), tables.size()}, sum);
  if (result == Result::kDone) stamp = sum;
  return static_cast<int>(result);
} catch (const std::exception&) {
  return static_cast<int>(Result::kFailed);
}

int CKovaDBSys::CheckIntegrity(std::string& finding) {
  return static_cast<int>(engine_ == nullptr ? Result::kNotOpen : engine_->CheckIntegrity(finding));
}

void CKovaDBSys::WrapEngine(const std::function<std::unique_ptr<Engine>(std::unique_ptr<Engine>)>& wrap) {
  ++generation_;
  kept_.clear();
  engine_ = wrap(std::move(engine_));
}

CKovaReads::CKovaReads(CKovaDBSys* db) : db_(db), generation_(db == nullptr ? 0 : db->GetGeneration()) {
  if (db_ != nullptr && db_->GetEngine() != nullptr) db_->GetEngine()->BeginReads();
}

Engine* CKovaReads::GetEngine() const {
  return db_ != nullptr && db_->GetGeneration() == generation_ ? db_->GetEngine() : nullptr;
}

CKovaReads::~CKovaReads() {
  if (Engine* const engine = GetEngine()) engine->EndReads();
}

void CKovaReads::EndWithNext() {
  if (Engine* const engine = GetEngine()) engine->EndReadsWithNext();
}

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
