#include "entry/host_address_choice.h"

namespace kova::entry {

std::string HostChooseAddress(CWnd*, postal::AddressChoice, const std::string&) { return {}; }

}  // namespace kova::entry
