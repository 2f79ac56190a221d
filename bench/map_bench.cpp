// The map of patients. map_bench FOLDER [PostGeo.csv]: a folder of its own on the disk to measure; without a
// list one of 120,679 towns is made.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "postal/map_job.h"
#include "postal/patient_map.h"

namespace kova::bench {
namespace {

constexpr int kTowns = 120679;
constexpr int kPatients = 100000;
constexpr int kTownsOfPatients = 300;

void Check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(1);
}

void MakeList(const std::string& file) {
  std::ofstream out(file, std::ios::binary);
  char line[96];
  for (int i = 0; i < kTowns; ++i) {
    std::snprintf(line, sizeof line, "%07d,town of twenty bytes %d,%.6f,%.6f\r\n", 10000 + i * 82, i,
                  31 + i * 1e-4, 130 + i * 1e-4);
    out << line;
  }
}

/// What the baseline adds up, so that nothing of it is left out.
volatile double sum = 0;

void ReadByLines(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  double total = 0;
  for (std::string line; std::getline(in, line);) {
    const std::size_t second = line.find(',', line.find(',') + 1);
    const std::size_t third = line.find(',', second + 1);
    total += std::atof(line.c_str() + second + 1) + std::atof(line.c_str() + third + 1);
  }
  sum = total;
}

std::vector<std::string> PatientCodes(const postal::PostTable& table) {
  // A practice's patients live in few towns, most of them in the nearest ones.
  std::vector<std::string> codes;
  for (int i = 0; i < kPatients; ++i) {
    const int near = (i % kTownsOfPatients) * (i % 7 + 1) / 7;
    codes.emplace_back(table.EntryAt(table.Size() / 2 + static_cast<std::size_t>(near))->code);
  }
  return codes;
}

void Main(const std::string& folder, const std::string& list) {
  os::Files& files = os::RealFiles();
  foundation::NoProgress progress;
  std::filesystem::copy_file(list, folder + "/PostGeo.csv",
                             std::filesystem::copy_options::overwrite_existing);
  std::ofstream(folder + "/map_tmp.htm") << "<script>\n//<setView>\n//<Maker>\n</script>\n";
  Compare(
      "coordinates loaded, against getline and atof", "<= 0.2", 41, 1,
      [&](int) {
        postal::PostTable table;
        Check(postal::LoadPostTable(files, folder + "\\", table, progress) && !table.IsEmpty(),
              "LoadPostTable");
      },
      [&](int) { ReadByLines(folder + "/PostGeo.csv"); });
  postal::PostTable table;
  Check(postal::LoadPostTable(files, folder + "\\", table, progress), "LoadPostTable");
  const std::vector<std::string> codes = PatientCodes(table);
  const auto load = [&](int) {
    postal::PostTable loaded;
    Check(postal::LoadPostTable(files, folder + "\\", loaded, progress), "LoadPostTable");
  };
  Compare(
      "100,000 patients to a page in memory, against loading", "<= 0.3", 41, 1,
      [&](int) {
        for (const std::string& code : codes) table.Count(code);
        postal::PlaceTable places;
        const auto bounds = postal::GatherPlaces(table, places, progress);
        Check(bounds && !postal::MapPage("//<setView>\n//<Maker>\n", places, *bounds).empty(), "MapPage");
        table.ResetCounts();
      },
      load);
  Compare(
      "  the same, with the page durably on the disk", "", 41, 1,
      [&](int) {
        Check(postal::MakePatientMap(files, folder + "\\", table, codes, progress).outcome ==
                  postal::MapResult::Outcome::kWritten,
              "MakePatientMap");
      },
      load);
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::fprintf(stderr, "usage: map_bench FOLDER [PostGeo.csv]\n");
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "/map";
  std::filesystem::create_directories(folder);
  std::string list = folder + "/towns.csv";
  if (argc == 3) {
    list = argv[2];
  } else {
    kova::bench::MakeList(list);
  }
  kova::bench::Main(folder, list);
  return 0;
}
