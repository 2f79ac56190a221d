#pragma once

// The pages that the stand-in form printer makes of print data: what a patient takes home, to be looked at in
// a browser and printed from it.

#include <string>

#include "printing/print_data.h"

namespace kova::companions {

/// A self-contained HTML page in UTF-8, A5, of a receipt or a patient's form. No text of the data is cut:
/// long ones go on in the next line, long lists on the next page.
std::string FormPage(const printing::PrintData& data);

}  // namespace kova::companions
