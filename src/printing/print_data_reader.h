#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "printing/print_data.h"

namespace kova::printing {

/// Where and why a file does not follow the format.
struct PrintDataFault {
  int line = 0;        // from 1
  std::string reason;  // one line of English
};

/// No file of the suite comes near; a reader need not take more.
inline constexpr std::size_t kLargestPrintData = 4U << 20;

/// What the bytes of a file say, in `data`. Nothing else than what WritePrintData can write is accepted:
/// sections, counts and keys in their order, lines that end in CR LF, values without control characters and
/// half characters. Else the first fault; `data` then holds what came before it.
std::optional<PrintDataFault> ReadPrintData(std::string_view bytes, PrintData& data);

}  // namespace kova::printing
