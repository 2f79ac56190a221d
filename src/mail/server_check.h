#pragma once

// Whether a mail server answers: it is connected to and listened to. Nothing is sent.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/progress.h"
#include "platform/os/tcp.h"

namespace kova::mail {

struct ServerPlace {
  std::string host;
  std::vector<int> ports;  // to be tried in this order

  bool operator==(const ServerPlace&) const = default;
};

/// What the setting "host" or "host:port" names; blanks around it do not count, and an address with colons
/// stands in "[]". Without a port 587 and 25, in the order that the kind of server suggests. Nothing when
/// there is no host or the port is none.
std::optional<ServerPlace> PlaceOfServer(std::string_view server, bool authenticates);

struct ServerAnswer {
  os::TcpOutcome outcome = os::TcpOutcome::kNoHost;
  int port = 0;  // that answered, or the last that was tried
  bool connected = false;
  std::string greeting;  // its lines, "\n" between; may be there although the rest did not come
};

/// The greeting of the first port that can be connected to.
ServerAnswer AskServer(os::Tcp& tcp, const ServerPlace& place, foundation::Progress& progress);

/// True when the server greeted as one that takes mail does.
bool IsReady(const ServerAnswer& answer);

/// What came of it, for the user; empty when the user stopped it.
std::string Describe(const ServerPlace& place, const ServerAnswer& answer);

}  // namespace kova::mail
