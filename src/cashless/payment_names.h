#pragma once

// What the files of a payment are called.

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

#include "platform/os/files.h"

namespace kova::cashless {

/// A transaction's name as the base of file names: letters, digits, "-", "_", half-width kana and double-byte
/// characters stay, anything else becomes "_", at most 64 bytes. A name that was changed, is empty or is one
/// of the system's devices gets a "-" and eight digits that tell it from others. Gives the name back that it
/// gave.
std::string SafeBaseName(std::string_view name);

struct PaymentName {
  std::string name;
  std::int32_t sequence = 0;  // 1 to 999999, then from 1 again
};

/// A name that no payment of the practice had before: time, workstation and the practice's counter. The
/// counter is "Cashless.number" in the database folder, counted up under "Cashless.lock"; it is made when
/// missing. Names that have files in the exchange folder are passed over. kBusy when other workstations held
/// the lock longer than five seconds.
[[nodiscard]] os::FileOutcome TakePaymentName(os::Files& files, std::string_view databaseFolder,
                                              std::string_view workstation, const std::tm& now,
                                              PaymentName& taken);

}  // namespace kova::cashless
