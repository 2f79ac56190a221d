#include "platform/os/sockets.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace kova::os {
namespace {

SocketState Await(NativeSocket socket, short events, int milliseconds) {
  pollfd waited{static_cast<int>(socket), events, 0};
  const int answer = ::poll(&waited, 1, milliseconds);
  if (answer == 0 || (answer < 0 && errno == EINTR)) return SocketState::kWaiting;
  return answer < 0 ? SocketState::kFailed : SocketState::kReady;
}

int ErrorOf(NativeSocket socket) {
  int error = 0;
  socklen_t size = sizeof error;
  return ::getsockopt(static_cast<int>(socket), SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

}  // namespace

SocketLibrary::SocketLibrary() = default;
SocketLibrary::~SocketLibrary() = default;

// Looked up to the system's end: nobody waits for it at a window here.
TcpOutcome LookUp(const std::string& host, int port, const TcpPatience&,
                  std::vector<SocketAddress>& addresses) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0)
    return TcpOutcome::kNoHost;
  for (const addrinfo* each = found; each != nullptr; each = each->ai_next) {
    const auto* bytes = reinterpret_cast<const char*>(each->ai_addr);
    addresses.push_back({each->ai_family, {bytes, bytes + each->ai_addrlen}});
  }
  ::freeaddrinfo(found);
  return TcpOutcome::kOk;
}

NativeSocket StartConnect(const SocketAddress& address) {
  const int socket = ::socket(address.family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (socket < 0) return kNoSocket;
  const auto* name = reinterpret_cast<const sockaddr*>(address.bytes.data());
  if (::connect(socket, name, static_cast<socklen_t>(address.bytes.size())) != 0 && errno != EINPROGRESS) {
    ::close(socket);
    return kNoSocket;
  }
  return socket;
}

void CloseSocket(NativeSocket socket) { ::close(static_cast<int>(socket)); }

SocketState AwaitConnected(NativeSocket socket, int milliseconds) {
  const SocketState state = Await(socket, POLLOUT, milliseconds);
  if (state != SocketState::kReady) return state;
  sockaddr_storage peer{};
  socklen_t size = sizeof peer;
  return ::getpeername(static_cast<int>(socket), reinterpret_cast<sockaddr*>(&peer), &size) == 0
             ? SocketState::kReady
             : SocketState::kFailed;
}

SocketState AwaitBytes(NativeSocket socket, int milliseconds) { return Await(socket, POLLIN, milliseconds); }

TcpOutcome ConnectFailure(NativeSocket socket) {
  const int error = ErrorOf(socket);
  if (error == ECONNREFUSED) return TcpOutcome::kRefused;
  return error == ETIMEDOUT ? TcpOutcome::kTimedOut : TcpOutcome::kFailed;
}

int ReceiveBytes(NativeSocket socket, char* bytes, int size) {
  return static_cast<int>(::recv(static_cast<int>(socket), bytes, static_cast<std::size_t>(size), 0));
}

}  // namespace kova::os
