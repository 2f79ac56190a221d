#include "platform/recordstore/db_sys.h"

#include <exception>

#include "platform/os/drives.h"
#include "platform/recordstore/engine.h"

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
