// The postal address list: one lookup. postal_bench FOLDER [LIST]: an empty folder of its own, and a whole
// list to measure on; without one a made-up list as long as the real one is used.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bench/paired.h"
#include "platform/os/files.h"
#include "postal/address_list.h"
#include "postal/address_lookup.h"

namespace kova::bench {
namespace {

constexpr int kEntries = 124511;

void Check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "postal_bench: %s failed\n", what);
  std::exit(1);
}

std::string MadeUpList() {
  std::string list;
  for (int i = 0; i < kEntries; ++i) {
    char line[400];
    std::snprintf(line, sizeof line,
                  "%05d,\"%03d  \",\"%07d\",\"ﾄｳｷｮｳﾄ\",\"ﾐﾅﾄｸﾐﾅﾄｸ\",\"ｵﾓﾃﾏﾁ%d\",\"東京都港区第%d区表町%d\","
                  "\"港区\",\"表町%d\",0,0,1,0,0,0\r\n",
                  i / 64, i / 1000, i * 80, i, i / 64, i, i);
    list += line;
  }
  return list;
}

/// Code and address of an entry in the middle of the list.
postal::Candidate MiddleOf(const std::string& list) {
  postal::ListLines lines(std::string_view(list).substr(list.size() / 2));
  std::string_view line, field;
  Check(lines.Next(line) && lines.Next(line), "a line in the middle");
  postal::Candidate middle;
  postal::LineFields fields(line);
  for (int column = 0; fields.Next(field); ++column) {
    if (column == postal::kCodeColumn) middle.postalCode = field;
    if (column == postal::kAddressColumn) middle.address = field;
  }
  return middle;
}

std::size_t CountLines(const std::string& text) {
  std::size_t lines = 0;
  const char* end = text.data() + text.size();
  for (const char* at = text.data(); at < end; ++lines) {
    const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    at = found == nullptr ? end : static_cast<const char*>(found) + 1;
  }
  return lines;
}

int Main(const std::string& folder, const std::string& given) {
  os::Files& files = os::RealFiles();
  const std::string file = given.empty() ? folder + "\\Address.csv" : given;
  if (given.empty()) Check(files.Replace(file, MadeUpList()) == os::FileOutcome::kOk, "writing the list");
  std::string list;
  Check(files.Read(file, postal::kLargestAddressList, list) == os::FileOutcome::kOk, "reading the list");
  const postal::Candidate middle = MiddleOf(list);
  const auto lookUp = [&](const std::string& address) {
    Check(!postal::CodesOfAddress(files, file, address).list.empty(), "the address");
  };
  Compare(
      "a code's address, against reading and lines", "<= 1.5", 41, 1,
      [&](int) { Check(!postal::AddressesOfCode(files, file, middle.postalCode).list.empty(), "the code"); },
      [&](int) {
        std::string content;
        Check(files.Read(file, postal::kLargestAddressList, content) == os::FileOutcome::kOk, "reading");
        Check(CountLines(content) > 0, "lines");
      });
  Compare(
      "an address ten characters too long", "<= 1.3", 41, 1,
      [&](int) { lookUp(middle.address + "１２３４５６７８９０"); }, [&](int) { lookUp(middle.address); });
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 2 || argc == 3) return kova::bench::Main(argv[1], argc == 3 ? argv[2] : "");
  std::fprintf(stderr, "usage: postal_bench FOLDER [LIST]\n");
  return 2;
}
