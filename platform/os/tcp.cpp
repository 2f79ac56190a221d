#include "platform/os/tcp.h"

#include <algorithm>

#include "platform/os/clock.h"
#include "platform/os/sockets.h"
#include "platform/text932/cp932.h"

namespace kova::os {
namespace {

constexpr int kSlice = 100;  // milliseconds between two questions whether to go on

/// Asks `await` in slices until it is no more waiting.
template <typename Await>
TcpOutcome AwaitPatiently(const TcpPatience& patience, SocketState& state, Await await) {
  const std::int64_t end = MonotonicMilliseconds() + patience.milliseconds;
  for (;;) {
    if (!patience.goesOn()) return TcpOutcome::kStopped;
    const std::int64_t left = end - MonotonicMilliseconds();
    if (left <= 0) return TcpOutcome::kTimedOut;
    state = await(static_cast<int>(std::min<std::int64_t>(left, kSlice)));
    if (state != SocketState::kWaiting) return TcpOutcome::kOk;
  }
}

class Connection final : public TcpConnection {
 public:
  ~Connection() override { Use(kNoSocket); }

  TcpOutcome Open(const SocketAddress& address, const TcpPatience& patience) {
    Use(StartConnect(address));
    if (socket_ == kNoSocket) return TcpOutcome::kFailed;
    SocketState state = SocketState::kWaiting;
    const TcpOutcome outcome =
        AwaitPatiently(patience, state, [&](int slice) { return AwaitConnected(socket_, slice); });
    if (outcome != TcpOutcome::kOk) return outcome;
    return state == SocketState::kReady ? TcpOutcome::kOk : ConnectFailure(socket_);
  }

  TcpOutcome Receive(std::string& received, const TcpPatience& patience) override {
    SocketState state = SocketState::kWaiting;
    const TcpOutcome outcome =
        AwaitPatiently(patience, state, [&](int slice) { return AwaitBytes(socket_, slice); });
    if (outcome != TcpOutcome::kOk) return outcome;
    char bytes[1024];
    const int got = ReceiveBytes(socket_, bytes, sizeof bytes);
    if (got == 0) return TcpOutcome::kClosed;
    if (got < 0) return TcpOutcome::kFailed;
    received.append(bytes, static_cast<std::size_t>(got));
    return TcpOutcome::kOk;
  }

 private:
  void Use(NativeSocket socket) {
    if (socket_ != kNoSocket) CloseSocket(socket_);
    socket_ = socket;
  }

  SocketLibrary library_;
  NativeSocket socket_ = kNoSocket;
};

class NativeTcp final : public Tcp {
 public:
  TcpOutcome Connect(std::string_view host, int port, const TcpPatience& patience,
                     std::unique_ptr<TcpConnection>& connection) override {
    const std::int64_t end = MonotonicMilliseconds() + patience.milliseconds;
    auto opened = std::make_unique<Connection>();
    std::vector<SocketAddress> addresses;
    TcpOutcome outcome = LookUp(text932::ToUtf8(host), port, patience, addresses);
    if (outcome != TcpOutcome::kOk) return outcome;
    outcome = TcpOutcome::kNoHost;
    for (const SocketAddress& address : addresses) {
      const auto left = static_cast<int>(std::max<std::int64_t>(end - MonotonicMilliseconds(), 0));
      outcome = opened->Open(address, {left, patience.goesOn});
      if (outcome == TcpOutcome::kStopped) return outcome;
      if (outcome != TcpOutcome::kOk) continue;
      connection = std::move(opened);
      return outcome;
    }
    return outcome;
  }
};

}  // namespace

Tcp& RealTcp() {
  static NativeTcp tcp;
  return tcp;
}

}  // namespace kova::os
