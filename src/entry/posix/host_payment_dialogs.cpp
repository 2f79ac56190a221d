#include "entry/host_payment_dialogs.h"

namespace kova::entry {

int HostPaymentDialogs::Choose(std::int32_t, unsigned, int) { return 0; }

bool HostPaymentDialogs::PayByBridge(std::int32_t, std::string_view, std::string&) { return false; }

bool HostPaymentDialogs::PayByControl(std::int32_t, std::string_view, std::string&) { return false; }

}  // namespace kova::entry
