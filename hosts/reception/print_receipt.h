#pragma once

#include <string>

#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {

/// Prints the receipt of the patient's last sale: hands it over, has the form printer make its page, and
/// opens that. Gives what to tell the user, in code page 932.
std::string PrintLastReceipt(CKovaDBSys& db, const std::string& patient);

}  // namespace kova::hosts
