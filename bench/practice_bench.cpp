// Setting up a practice. practice_bench FOLDER: a folder of its own on the disk to measure.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench/paired.h"
#include "platform/os/files.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "practice/database_folder.h"

namespace kova::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kCopies = 20;  // a round

void Check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(1);
}

void Main(const std::string& folder) {
  os::Files& files = os::RealFiles();
  foundation::NoProgress progress;
  const std::string empty = folder + "/KovaEmptyDB";
  Check(KovaCreateDatabase(empty.c_str()) == 0, "KovaCreateDatabase");
  const auto name = [&](const char* kind, int round, int i) {
    return folder + "/" + kind + std::to_string(round * kCopies + i);
  };
  Compare(
      "empty database copied, against the system's copying", "<= 1.5", 41, kCopies,
      [&](int round) {
        for (int i = 0; i < kCopies; ++i)
          Check(practice::CopyEmptyDatabase(files, folder + "\\bin", name("ours", round, i), progress) ==
                    os::FileOutcome::kOk,
                "CopyEmptyDatabase");
      },
      [&](int round) {
        for (int i = 0; i < kCopies; ++i) fs::copy(empty, name("theirs", round, i));
      });
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: practice_bench FOLDER\n");
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "/practice";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  kova::bench::Main(folder);
  std::filesystem::remove_all(folder);
  return 0;
}
