#pragma once

// What differs between the systems' sockets; for tcp.cpp only.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/os/tcp.h"

namespace kova::os {

using NativeSocket = std::intptr_t;
inline constexpr NativeSocket kNoSocket = -1;

/// The system's address structure, as bytes.
struct SocketAddress {
  int family = 0;
  std::vector<char> bytes;
};

/// While it lives, sockets can be used.
class SocketLibrary {
 public:
  SocketLibrary();
  SocketLibrary(const SocketLibrary&) = delete;
  SocketLibrary& operator=(const SocketLibrary&) = delete;
  ~SocketLibrary();
};

/// The addresses of a host (UTF-8).
TcpOutcome LookUp(const std::string& host, int port, const TcpPatience& patience,
                  std::vector<SocketAddress>& addresses);

/// A socket that never blocks, on its way to the address; kNoSocket when it cannot go there.
NativeSocket StartConnect(const SocketAddress& address);
void CloseSocket(NativeSocket socket);

enum class SocketState { kWaiting, kReady, kFailed };
/// Waits until it is connected, or bytes have come.
SocketState AwaitConnected(NativeSocket socket, int milliseconds);
SocketState AwaitBytes(NativeSocket socket, int milliseconds);
/// Why connecting failed.
TcpOutcome ConnectFailure(NativeSocket socket);
/// Number of bytes read; 0 when the other side closed, negative for a failure.
int ReceiveBytes(NativeSocket socket, char* bytes, int size);

}  // namespace kova::os
