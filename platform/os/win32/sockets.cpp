#include "platform/os/sockets.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <memory>

#include "platform/os/clock.h"
#include "platform/os/win32/handle.h"
#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

constexpr DWORD kSlice = 100;  // milliseconds between two questions whether to go on

/// A look-up that goes on by itself; the system writes into it until `done` is set.
struct Query {
  OVERLAPPED overlapped{};
  Handle done{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  ADDRINFOEXW* found = nullptr;
  ~Query() {
    if (found != nullptr) FreeAddrInfoExW(found);
  }
};

TcpOutcome Await(const Query& query, const TcpPatience& patience) {
  const std::int64_t end = MonotonicMilliseconds() + patience.milliseconds;
  while (WaitForSingleObject(query.done.Get(), kSlice) != WAIT_OBJECT_0) {
    if (!patience.goesOn()) return TcpOutcome::kStopped;
    if (MonotonicMilliseconds() >= end) return TcpOutcome::kTimedOut;
  }
  return TcpOutcome::kOk;
}

SOCKET Of(NativeSocket socket) { return static_cast<SOCKET>(socket); }

SocketState Await(NativeSocket socket, bool forBytes, int milliseconds) {
  fd_set ready;
  fd_set failed;
  FD_ZERO(&ready);
  FD_ZERO(&failed);
  FD_SET(Of(socket), &ready);
  FD_SET(Of(socket), &failed);
  timeval time{milliseconds / 1000, milliseconds % 1000 * 1000};
  const int answer = select(0, forBytes ? &ready : nullptr, forBytes ? nullptr : &ready, &failed, &time);
  if (answer == 0) return SocketState::kWaiting;
  return answer > 0 && FD_ISSET(Of(socket), &ready) ? SocketState::kReady : SocketState::kFailed;
}

}  // namespace

SocketLibrary::SocketLibrary() {
  WSADATA data;
  (void)WSAStartup(MAKEWORD(2, 2), &data);
}
SocketLibrary::~SocketLibrary() { WSACleanup(); }

TcpOutcome LookUp(const std::string& host, int port, const TcpPatience& patience,
                  std::vector<SocketAddress>& addresses) {
  std::string text;
  (void)text932::FromUtf8(host, text);
  const std::u16string wide = text932::ToUtf16(text);
  ADDRINFOEXW wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  auto query = std::make_unique<Query>();
  query->overlapped.hEvent = query->done.Get();
  const int started =
      GetAddrInfoExW(std::wstring(wide.begin(), wide.end()).c_str(), std::to_wstring(port).c_str(), NS_ALL,
                     nullptr, &wanted, &query->found, nullptr, &query->overlapped, nullptr, nullptr);
  if (started != NO_ERROR && started != WSA_IO_PENDING) return TcpOutcome::kNoHost;
  const TcpOutcome outcome = started == NO_ERROR ? TcpOutcome::kOk : Await(*query, patience);
  if (outcome != TcpOutcome::kOk) {
    (void)query.release();  // the system still writes into it, so it stays, at the price of its memory
    return outcome;
  }
  if (query->found == nullptr) return TcpOutcome::kNoHost;
  // Some headers name the type of the next one differently.
  const auto next = [](const ADDRINFOEXW* each) {
    return reinterpret_cast<const ADDRINFOEXW*>(each->ai_next);
  };
  for (const ADDRINFOEXW* each = query->found; each != nullptr; each = next(each)) {
    const auto* bytes = reinterpret_cast<const char*>(each->ai_addr);
    addresses.push_back({each->ai_family, {bytes, bytes + each->ai_addrlen}});
  }
  return TcpOutcome::kOk;
}

NativeSocket StartConnect(const SocketAddress& address) {
  const SOCKET made = socket(address.family, SOCK_STREAM, IPPROTO_TCP);
  if (made == INVALID_SOCKET) return kNoSocket;
  u_long on = 1;
  const auto* name = reinterpret_cast<const sockaddr*>(address.bytes.data());
  const bool started = ioctlsocket(made, FIONBIO, &on) == 0 &&
                       (connect(made, name, static_cast<int>(address.bytes.size())) == 0 ||
                        WSAGetLastError() == WSAEWOULDBLOCK);
  if (started) return static_cast<NativeSocket>(made);
  closesocket(made);
  return kNoSocket;
}

void CloseSocket(NativeSocket socket) { closesocket(Of(socket)); }

SocketState AwaitConnected(NativeSocket socket, int milliseconds) {
  return Await(socket, false, milliseconds);
}

SocketState AwaitBytes(NativeSocket socket, int milliseconds) { return Await(socket, true, milliseconds); }

TcpOutcome ConnectFailure(NativeSocket socket) {
  int error = 0;
  int size = sizeof error;
  getsockopt(Of(socket), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
  if (error == WSAECONNREFUSED) return TcpOutcome::kRefused;
  return error == WSAETIMEDOUT ? TcpOutcome::kTimedOut : TcpOutcome::kFailed;
}

int ReceiveBytes(NativeSocket socket, char* bytes, int size) { return recv(Of(socket), bytes, size, 0); }

}  // namespace kova::os
