// A tick of a payment through the bridge. cashless_bench FOLDER: an empty folder of its own on the disk to
// measure.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench/paired.h"
#include "cashless/exchange.h"

namespace kova::bench {
namespace {

void Check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(1);
}

void Tick(const std::string& folder, const char* there) {
  constexpr int kTicks = 200;
  os::Files& files = os::RealFiles();
  const std::string base = folder + "\\20240401-101500-FRONT1-000123";
  cashless::Exchange exchange(files, folder + "\\", nullptr);
  exchange.Resume("20240401-101500-FRONT1-000123");
  if (*there != '\0') Check(files.Replace(base + there, "") == os::FileOutcome::kOk, "the bridge's file");
  const std::string name = std::string("tick of a payment, ") + (*there == '\0' ? "no file" : there);
  Compare(
      name.c_str(), "<= 1.5", 41, kTicks,
      [&](int) {
        for (int i = 0; i < kTicks; ++i) Check(exchange.Tick().isTicking, "the waiting");
      },
      [&](int) {
        for (int i = 0; i < kTicks; ++i) {
          for (const char* extension : {".dat", ".fin", ".err", ".pro", ".tmp"})
            Check(files.Kind(base + extension) == os::PathKind::kNothing || extension == std::string(there),
                  "Kind");
        }
      });
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: cashless_bench FOLDER\n");
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "\\Cashless";
  std::filesystem::create_directories(std::string(argv[1]) + "/Cashless");
  kova::bench::Tick(folder, "");
  kova::bench::Tick(folder, ".pro");
}
