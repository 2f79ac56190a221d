#include "platform/os/network_adapter.h"

#include <winsock2.h>
#include <iphlpapi.h>

#include <cstdio>
#include <vector>

namespace kova::os {
namespace {

constexpr ULONG kAddressLength = 6;

std::string Text(const BYTE (&address)[MAX_ADAPTER_ADDRESS_LENGTH]) {
  char text[3 * kAddressLength + 1];
  std::snprintf(text, sizeof text, "%02X-%02X-%02X-%02X-%02X-%02X", address[0], address[1], address[2],
                address[3], address[4], address[5]);
  return text;
}

/// The system's list lies in `room`.
const IP_ADAPTER_ADDRESSES* Adapters(std::vector<char>& room) {
  constexpr ULONG kLeftOut = GAA_FLAG_SKIP_UNICAST | GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST |
                             GAA_FLAG_SKIP_DNS_SERVER | GAA_FLAG_SKIP_FRIENDLY_NAME;
  ULONG size = 16384;
  for (int attempt = 0; attempt < 3; ++attempt) {
    room.resize(size);
    auto* adapters = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(room.data());
    const ULONG error = GetAdaptersAddresses(AF_UNSPEC, kLeftOut, nullptr, adapters, &size);
    if (error == ERROR_SUCCESS) return adapters;
    if (error != ERROR_BUFFER_OVERFLOW) break;
  }
  return nullptr;
}

}  // namespace

std::string NetworkAdapterAddress() {
  std::vector<char> room;
  const IP_ADAPTER_ADDRESSES* found = nullptr;
  for (const auto* each = Adapters(room); each != nullptr; each = each->Next) {
    if (each->PhysicalAddressLength != kAddressLength || each->IfType == IF_TYPE_SOFTWARE_LOOPBACK) continue;
    if (found == nullptr) found = each;
    if (each->OperStatus == IfOperStatusUp) {
      found = each;
      break;
    }
  }
  return found == nullptr ? "00-00-00-00-00-00" : Text(found->PhysicalAddress);
}

}  // namespace kova::os
