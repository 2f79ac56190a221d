#pragma once

#include <string>

#include "cashless/cashless_payment.h"
#include "entry/session.h"
#include "foundation/folders.h"
#include "platform/os/clock.h"
#include "platform/os/program.h"

namespace kova::entry {

/// The journal of this workstation's payments: beside the host's profile where that is a file with its
/// folder, else by the profile's name in the user's local data. Empty without a host.
std::string HostPaymentJournal();

/// A session that takes a payment.
struct PaymentSession : Session {
  cashless::PaymentJournal journal{files, HostPaymentJournal()};
  cashless::PaymentPlace place{files,
                               foundation::DatabaseFolder(profile),
                               os::WorkstationName(),
                               journal,
                               cashless::ReadCashlessSettings(settings.Open()),
                               &os::LocalTime};
};

}  // namespace kova::entry
