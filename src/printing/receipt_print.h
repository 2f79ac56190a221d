#pragma once

#include <string>
#include <string_view>

#include "foundation/settings.h"
#include "platform/os/application_profile.h"
#include "platform/os/files.h"
#include "printing/print_data.h"
#include "printing/receipt.h"

namespace kova::printing {

/// What an operation that prints comes to; exported, do not change the numbers.
enum class PrintStatus : int {
  kDone = 0,
  kNotWritten = -1,  // the file could not be written or handed over; an older one is as it was
  kBadReceipt = -2,  // nothing to print from: no receipt, no file name, a line that is not there
  kTooLong = -3,     // the list has more than 999 columns, which the format cannot hold
  kNoSale = -4,      // there is no such sale, or it could not be read
  kNoSettings = -5,  // the practice's settings, which amounts and texts depend on, could not be read
};

/// What the file of a receipt says, in `data`. Reads nothing but its arguments.
[[nodiscard]] PrintStatus MakeReceiptData(const _TMPRECEIPT& receipt,
                                          const foundation::SettingsSnapshot& settings,
                                          const os::ApplicationProfile& profile, unsigned int flags,
                                          PrintData& data);

/// Gives the form printer the file `basePath` + ".tmp": written as ".tm_", flushed, then renamed over it. The
/// printer sees the old file or the new one, whatever happens, and no ".tm_" is left where it can be removed.
[[nodiscard]] PrintStatus HandOver(os::Files& files, std::string_view basePath, const PrintData& data);

}  // namespace kova::printing
