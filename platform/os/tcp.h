#pragma once

// A connection to a server, as far as the library needs one: opened and listened to. Every wait can be
// stopped.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kova::os {

enum class TcpOutcome {
  kOk,
  kNoHost,    // the name is not known
  kRefused,   // nobody listens at that port
  kTimedOut,  // no answer within the time
  kClosed,    // the other side closed the connection
  kStopped,   // the caller wanted it no more
  kFailed,    // anything else
};

/// How long something is waited for. `goesOn` is asked a few times a second, and ends the waiting when false.
struct TcpPatience {
  int milliseconds;
  std::function<bool()> goesOn;
};

/// An open connection; destroying it closes it.
class TcpConnection {
 public:
  TcpConnection() = default;
  TcpConnection(const TcpConnection&) = delete;
  TcpConnection& operator=(const TcpConnection&) = delete;
  virtual ~TcpConnection() = default;

  /// Waits for bytes and appends those that have come to `received`.
  [[nodiscard]] virtual TcpOutcome Receive(std::string& received, const TcpPatience& patience) = 0;
};

class Tcp {
 public:
  virtual ~Tcp() = default;

  /// Connects to a host by name or number, trying its addresses in turn; `patience` is for all of it.
  [[nodiscard]] virtual TcpOutcome Connect(std::string_view host, int port, const TcpPatience& patience,
                                           std::unique_ptr<TcpConnection>& connection) = 0;
};

/// The machine's own network. It keeps no state.
Tcp& RealTcp();

}  // namespace kova::os
