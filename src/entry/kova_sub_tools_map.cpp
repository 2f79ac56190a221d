// The map of patients: the operations of the exported class.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "entry/host_prompts.h"
#include "entry/host_wait.h"
#include "entry/kova_sub_tools.h"
#include "entry/session.h"
#include "platform/os/error_text.h"
#include "platform/os/program.h"
#include "platform/os/shell.h"
#include "platform/recordstore/kovadbcall.h"
#include "postal/map_job.h"
#include "postal/patient_map.h"

using namespace kova;
using entry::Guarded;
using entry::View;
using postal::MapResult;

namespace {

constexpr char kTitle[] = "患者分布図";
constexpr char kKept[] = "PostGeo";

struct KeptPostList final : CKovaKept {
  CPostList table;
};

/// Shows the page, or says why there is none.
int Show(const MapResult& result) {
  if (result.outcome == MapResult::Outcome::kStopped) return 0;
  std::string why = result.file;
  if (result.outcome == MapResult::Outcome::kWritten) {
    if (os::RealShell().Open(result.file)) return 1;
    why += "\nブラウザーを開けません。";
  } else {
    why += "\n" + os::SystemErrorText(result.why);
  }
  entry::HostPrompts().Inform(why);
  return 0;
}

/// Over a window with a progress dialog, without one without.
void Work(CWnd* over, const std::function<void(foundation::Progress&)>& work) {
  foundation::NoProgress none;
  if (over == nullptr) {
    work(none);
  } else {
    entry::HostWork(over, kTitle, work);
  }
}

}  // namespace

CPostList* CKovaSubTools::GetPostList(CKovaDBSys* db) {
  if (db == nullptr) return nullptr;
  return Guarded<CPostList*>(nullptr, [&] {
    auto* kept = static_cast<KeptPostList*>(db->GetKept(kKept));
    if (kept == nullptr) db->SetKept(kKept, kept = new KeptPostList);
    return &kept->table;
  });
}

CPlaceList* CKovaSubTools::NewPlaceList() {
  return Guarded<CPlaceList*>(nullptr, [] { return new CPlaceList; });
}

void CKovaSubTools::FreePlaceList(CPlaceList* places) { delete places; }

int CKovaSubTools::InitPostList(CKovaDBSys* db, CWnd* progress) {
  CPostList* table = GetPostList(db);
  if (table == nullptr || !table->IsEmpty()) return 1;
  return Guarded(1, [&] {
    bool isWhole = true;
    Work(progress, [&](foundation::Progress& shown) {
      shown.Begin("〒番号データ読み込み中");
      isWhole = postal::LoadPostTable(os::RealFiles(), os::ProgramFolder(), *table, shown);
    });
    return isWhole ? 1 : 0;
  });
}

void CKovaSubTools::SetPostData(CPostList* table, const char* code) {
  if (table != nullptr) table->Count(View(code));
}

void CKovaSubTools::ResetPostList(CPostList* table) {
  if (table != nullptr) table->ResetCounts();
}

int CKovaSubTools::RemapPostList(CWnd* progress, CPostList* table, CPlaceList* places, double* minLatitude,
                                 double* maxLatitude, double* minLongitude, double* maxLongitude) {
  if (table == nullptr || places == nullptr) return 0;
  return Guarded(0, [&] {
    std::optional<postal::MapBounds> bounds;
    Work(progress, [&](foundation::Progress& shown) {
      shown.Begin("地図情報作成中");
      bounds = postal::GatherPlaces(*table, *places, shown);
    });
    if (!bounds) return 0;
    if (minLatitude != nullptr) *minLatitude = bounds->minLatitude;
    if (maxLatitude != nullptr) *maxLatitude = bounds->maxLatitude;
    if (minLongitude != nullptr) *minLongitude = bounds->minLongitude;
    if (maxLongitude != nullptr) *maxLongitude = bounds->maxLongitude;
    return 1;
  });
}

int CKovaSubTools::CallPostMap(CWnd* progress, CPostList* table) {
  if (table == nullptr) return 0;
  return Guarded(0, [&] {
    MapResult result;
    Work(progress, [&](foundation::Progress& shown) {
      shown.Begin("地図情報作成中");
      result = postal::WriteMap(os::RealFiles(), os::ProgramFolder(), *table, shown);
    });
    return Show(result);
  });
}

int CKovaSubTools::CallPostToMap(CKovaDBSys* db, CWnd* parent, CStringArray* codes) {
  CPostList* table = GetPostList(db);
  if (table == nullptr || codes == nullptr) return 0;
  return Guarded(0, [&] {
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(codes->GetSize()));
    for (int i = 0; i < codes->GetSize(); ++i) texts.emplace_back(View(codes->GetAt(i).GetString()));
    MapResult result;
    entry::HostWork(parent, kTitle, [&](foundation::Progress& progress) {
      result = postal::MakePatientMap(os::RealFiles(), os::ProgramFolder(), *table, texts, progress);
    });
    return Show(result);
  });
}
