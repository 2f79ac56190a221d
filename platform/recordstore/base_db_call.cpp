#include "platform/recordstore/base_db_call.h"

#include <cstring>
#include <new>
#include <optional>
#include <string>

#include "platform/recordstore/cursor.h"
#include "platform/recordstore/table_ids.h"

using kova::store::Cursor;
using kova::store::Engine;
using kova::store::Result;

namespace {

// The one place where an answer becomes an int and an exception (memory ran out) a result.
template <typename Operation>
int AsInt(Operation operation) {
  try {
    return static_cast<int>(operation());
  } catch (const std::exception&) {
    return static_cast<int>(Result::kFailed);
  }
}

}  // namespace

CBaseDBCall::CBaseDBCall(kova::store::TableId table, void* buffer, const char*, int)
    : cursor_(std::make_unique<Cursor>(kova::store::GetTable(table), static_cast<char*>(buffer))) {}

CBaseDBCall::~CBaseDBCall() = default;

int CBaseDBCall::SetAssociatedDB(CKovaDBSys* db) {
  db_ = db == nullptr ? nullptr : db->GetPlace();
  cursor_->Bind(nullptr);
  if (db != nullptr) generation_ = db->GetGeneration();
  return Open();
}

int CBaseDBCall::Open() {
  DropClosed();
  if (cursor_->IsBound()) return 0;
  CKovaDBSys* const db = GetDB();
  if (db == nullptr || db->GetEngine() == nullptr) return static_cast<int>(Result::kNotOpen);
  generation_ = db->GetGeneration();
  cursor_->Bind(db->GetEngine());
  return 0;
}

void CBaseDBCall::Close() { cursor_->Bind(nullptr); }

// The connection may have been closed, opened on another folder or destroyed since.
void CBaseDBCall::DropClosed() {
  const CKovaDBSys* const db = GetDB();
  if (db == nullptr || db->GetGeneration() != generation_) cursor_->Bind(nullptr);
}

Engine* CBaseDBCall::GetEngine() {
  DropClosed();
  return cursor_->BoundEngine();
}

int CBaseDBCall::SetKey(int keyNumber) {
  return AsInt([&] { return cursor_->SetKey(keyNumber); });
}

int CBaseDBCall::SetFields(const char* names) {
  return AsInt([&] { return cursor_->SetFields(names == nullptr ? std::string_view() : names); });
}

void CBaseDBCall::SetKeyBuffer(const char* key, unsigned long length) {
  try {
    cursor_->SetKeyBuffer(key == nullptr ? std::string_view() : std::string_view(key, length));
  } catch (const std::exception&) {
    // No memory for a few bytes: the next positioning uses what was there and most likely fails too.
  }
}

void CBaseDBCall::SetWalkEnd(const char* key, unsigned long length) {
  try {
    cursor_->SetWalkEnd(key == nullptr ? std::optional<std::string_view>() : std::string_view(key, length));
  } catch (const std::exception&) {
    // As above.
  }
}

void CBaseDBCall::SetWalk(std::span<const std::string> beginnings) {
  try {
    cursor_->SetWalk(beginnings);
  } catch (const std::exception&) {
    // As above.
  }
}

int CBaseDBCall::ReadAhead(std::span<const std::string> firstFields) {
  DropClosed();
  return AsInt([&] { return cursor_->ReadAhead(firstFields); });
}

#define KOVA_POSITIONING(Name, CursorCall)             \
  int CBaseDBCall::Name() {                            \
    DropClosed();                                      \
    return AsInt([&] { return cursor_->CursorCall; }); \
  }
KOVA_POSITIONING(GetEQ, GetEqual())
KOVA_POSITIONING(GetGREQ, GetGreaterOrEqual())
KOVA_POSITIONING(GetLEEQ, GetLessOrEqual())
KOVA_POSITIONING(GetLESS, GetLess())
KOVA_POSITIONING(GetFIRST, GetFirst())
KOVA_POSITIONING(GetLAST, GetLast())
KOVA_POSITIONING(GetNEXT, GetNext())
KOVA_POSITIONING(GetPREV, GetPrevious())
KOVA_POSITIONING(Insert, Insert())
KOVA_POSITIONING(Update, Update(false))
KOVA_POSITIONING(UpdateIfUnchanged, Update(true))
KOVA_POSITIONING(Delete, Delete())
#undef KOVA_POSITIONING

int CBaseDBCall::IsEOF() const { return cursor_->AtEnd() ? 1 : 0; }

#define KOVA_TRANSACTION(Name, EngineCall)                                                   \
  int CBaseDBCall::Name() {                                                                  \
    Engine* engine = GetEngine();                                                            \
    return AsInt([&] { return engine == nullptr ? Result::kNotOpen : engine->EngineCall; }); \
  }
KOVA_TRANSACTION(BeginTran, Begin())
KOVA_TRANSACTION(EndTran, End())
KOVA_TRANSACTION(AbortTran, Abort())
#undef KOVA_TRANSACTION

CTime CBaseDBCall::GetFileTime() {
  std::int64_t stamp = 0;
  Engine* engine = GetEngine();
  const int result = AsInt(
      [&] { return engine == nullptr ? Result::kNotOpen : engine->ChangeStamp(cursor_->Table(), stamp); });
  return CTime(result == 0 ? stamp : 0);
}

int CBaseDBCall::PrimeKeyFromBuffer() {
  return AsInt([&] {
    cursor_->SetKeyBuffer(cursor_->PrimeKeyOfBuffer());
    return cursor_->SetKey(0);
  });
}

int CBaseDBCall::GetByPrimeKey(const char* first) { return GetByPrimeKey(first, nullptr); }

int CBaseDBCall::GetByPrimeKey(const char* first, const char* second) {
  DropClosed();
  return AsInt([&] {
    const kova::store::KeyDef& key = cursor_->Table().keys.front();
    std::string bytes;
    std::size_t end = 0;
    const char* texts[] = {first, second};
    for (std::size_t i = 0; i < key.fields.size() && i < 2 && texts[i] != nullptr; ++i) {
      // A text longer than the field is no record's key: cut, it would find another record.
      if (std::strlen(texts[i]) > key.fields[i]->width) return Result::kNotFound;
      end += key.fields[i]->width;
      bytes += texts[i];
      bytes.resize(end);
    }
    if (end == 0) return Result::kBadArgument;
    bytes.resize(key.width);
    const Result chosen = cursor_->SetKey(0);
    if (chosen != Result::kDone) return chosen;
    cursor_->SetKeyBuffer(bytes);
    return cursor_->GetEqual();
  });
}
