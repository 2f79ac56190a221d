// A print data file of any bytes: it is refused with a line and a reason, or it is what the writer writes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "printing/print_data_reader.h"

namespace {

using namespace kova::printing;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Any bytes as values come back as their plain form.
void ValuesComeBack(const std::string& input) {
  for (const int count : {79, 99}) {
    PrintData data, read;
    data.form = FormOfCount(count);
    data.simple[1] = data.simple[2] = input;
    data.insurance[49] = input;
    data.columns = {{{input, "", input, ""}}};
    Require(!ReadPrintData(WritePrintData(data), read).has_value());
    Require(read.form == data.form && read.simple[1] == PlainValue(input) &&
            read.simple[2] == read.simple[1]);
    if (count == 99)
      Require(read.insurance[49] == read.simple[1] && read.columns[0].rows[2] == read.simple[1]);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  PrintData read;
  if (const auto fault = ReadPrintData(input, read)) {
    Require(fault->line >= 1 && !fault->reason.empty() && read.form != nullptr);
    for (const char c : fault->reason) Require(c >= 0x20 && c < 0x7F);
  } else {
    Require(WritePrintData(read) == input);
  }
  ValuesComeBack(input);
  return 0;
}
