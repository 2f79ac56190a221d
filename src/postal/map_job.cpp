#include "postal/map_job.h"

#include <cstddef>
#include <utility>

#include "platform/os/paths.h"
#include "postal/patient_map.h"

namespace kova::postal {
namespace {

using os::FileOutcome;
using Outcome = MapResult::Outcome;

constexpr std::size_t kLargestCoordinates = std::size_t{256} << 20;
constexpr std::size_t kLargestTemplate = std::size_t{16} << 20;
constexpr std::size_t kCodesAReport = 1024;
constexpr int kLockPatience = 5000;  // milliseconds

class CountsReset {
 public:
  explicit CountsReset(PostTable& table) : table_(table) {}
  CountsReset(const CountsReset&) = delete;
  CountsReset& operator=(const CountsReset&) = delete;
  ~CountsReset() { table_.ResetCounts(); }

 private:
  PostTable& table_;
};

bool CountCodes(PostTable& table, const std::vector<std::string>& codes, foundation::Progress& progress) {
  for (std::size_t i = 0; i < codes.size(); ++i) {
    if (i % kCodesAReport == 0 &&
        !progress.Report(static_cast<double>(i) / static_cast<double>(codes.size())))
      return false;
    table.Count(codes[i]);
  }
  return progress.Report(1);
}

}  // namespace

bool LoadPostTable(os::Files& files, std::string_view programFolder, PostTable& table,
                   foundation::Progress& progress) {
  std::string csv;
  if (files.Read(os::JoinPath(programFolder, "PostGeo.csv"), kLargestCoordinates, csv) != FileOutcome::kOk)
    return true;
  return table.Load(std::move(csv), progress);
}

MapResult WriteMap(os::Files& files, std::string_view programFolder, const PostTable& table,
                   foundation::Progress& progress) {
  PlaceTable places;
  const auto bounds = GatherPlaces(table, places, progress);
  if (!bounds) return {Outcome::kStopped, {}, FileOutcome::kOk};
  const std::string source = os::JoinPath(programFolder, "map_tmp.htm");
  std::string text;
  FileOutcome outcome = files.Read(source, kLargestTemplate, text);
  if (outcome != FileOutcome::kOk) return {Outcome::kFailed, source, outcome};
  const std::string page = os::JoinPath(programFolder, "map.htm");
  std::unique_ptr<os::FileLock> lock;  // two maps at once are written one after the other
  outcome = files.Lock(page + ".lock", kLockPatience, lock);
  if (outcome == FileOutcome::kOk) outcome = files.Replace(page, MapPage(text, places, *bounds));
  return {outcome == FileOutcome::kOk ? Outcome::kWritten : Outcome::kFailed, page, outcome};
}

MapResult MakePatientMap(os::Files& files, std::string_view programFolder, PostTable& table,
                         const std::vector<std::string>& codes, foundation::Progress& progress) {
  const CountsReset reset(table);
  double begun = 0;
  if (table.IsEmpty()) {
    progress.Begin("〒番号データ読み込み中", 0, 0.5);
    if (!LoadPostTable(files, programFolder, table, progress))
      return {Outcome::kStopped, {}, FileOutcome::kOk};
    begun = 0.5;
  }
  const double counted = begun == 0 ? 0.5 : 0.8;
  progress.Begin("〒番号データマッチング中", begun, counted);
  if (!CountCodes(table, codes, progress)) return {Outcome::kStopped, {}, FileOutcome::kOk};
  progress.Begin("地図情報作成中", counted, 1);
  return WriteMap(files, programFolder, table, progress);
}

}  // namespace kova::postal
