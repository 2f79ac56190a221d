#include "platform/recordstore/db_sys.h"

#include <new>

#include "platform/recordstore/engine.h"

using kova::store::Result;

CKovaDBSys::CKovaDBSys() = default;

CKovaDBSys::~CKovaDBSys() { CloseDB(); }

int CKovaDBSys::OpenDB(const char* folder) try {
  CloseDB();
  Result result = Result::Failed;
  engine_ = kova::store::OpenEngine(folder == nullptr ? "" : folder, result);
  return static_cast<int>(result);
} catch (const std::exception&) {
  CloseDB();
  return static_cast<int>(Result::Failed);
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

int CKovaDBSys::CheckIntegrity(std::string& finding) {
  return static_cast<int>(engine_ == nullptr ? Result::NotOpen : engine_->CheckIntegrity(finding));
}

CKovaReads::CKovaReads(CKovaDBSys* db) : db_(db), generation_(db == nullptr ? 0 : db->GetGeneration()) {
  if (db_ != nullptr && db_->GetEngine() != nullptr) db_->GetEngine()->BeginReads();
}

CKovaReads::~CKovaReads() {
  const bool same = db_ != nullptr && db_->GetGeneration() == generation_;
  if (same && db_->GetEngine() != nullptr) db_->GetEngine()->EndReads();
}

int KovaCreateDatabase(const char* folder) try {
  return static_cast<int>(kova::store::CreateDatabase(folder == nullptr ? "" : folder));
} catch (const std::exception&) {
  return static_cast<int>(Result::Failed);
}
