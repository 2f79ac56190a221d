#pragma once

#include "hosts/kovacall/operation.h"

namespace kova::hosts {

/// The fillers of lists and the patient query, in the order of the library's header. They print what a form
/// would show: each entry's text and data, and which one is selected.
const std::vector<Operation>& FillerOperations();

}  // namespace kova::hosts
