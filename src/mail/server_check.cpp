#include "mail/server_check.h"

#include <cctype>
#include <memory>

#include "platform/text932/cp932.h"

namespace kova::mail {
namespace {

using os::TcpOutcome;

constexpr int kConnectPatience = 10000;   // milliseconds, for one port
constexpr int kGreetingPatience = 10000;  // milliseconds between two pieces
constexpr std::size_t kLongestGreeting = 4000;
constexpr int kSubmission = 587;
constexpr int kRelay = 25;

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::optional<int> PortOf(std::string_view text) {
  if (text.empty() || text.size() > 5) return std::nullopt;
  int port = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    port = port * 10 + (c - '0');
  }
  return port >= 1 && port <= 65535 ? std::optional(port) : std::nullopt;
}

// A reply ends with the first line whose three digits no "-" follows.
bool IsWhole(std::string_view received) {
  for (std::size_t at = 0, end; (end = received.find('\n', at)) != std::string_view::npos; at = end + 1) {
    if (received.substr(at, end - at).size() < 4 || received[at + 3] != '-') return true;
  }
  return false;
}

// As it can be shown: what is not ASCII may be in any encoding.
std::string Shown(std::string_view received) {
  std::string shown;
  for (const char c : received) {
    if (c == '\n')
      shown += c;
    else if (c != '\r')
      shown += std::isprint(static_cast<unsigned char>(c)) ? c : '?';
  }
  while (shown.ends_with('\n')) shown.pop_back();
  return shown;
}

TcpOutcome Listen(os::TcpConnection& connection, const os::TcpPatience& patience, std::string& greeting) {
  std::string received;
  TcpOutcome outcome = TcpOutcome::kOk;
  while (outcome == TcpOutcome::kOk && !IsWhole(received) && received.size() < kLongestGreeting)
    outcome = connection.Receive(received, patience);
  greeting = Shown(std::string_view(received).substr(0, kLongestGreeting));
  return outcome;
}

std::string Why(const ServerAnswer& answer) {
  switch (answer.outcome) {
    case TcpOutcome::kNoHost:
      return "サーバーの名前が見つかりません。";
    case TcpOutcome::kRefused:
      return "サーバーに接続を断られました。";
    case TcpOutcome::kTimedOut:
      return answer.connected ? "接続できましたが、サーバーが応答しません。暗号化用のポートかもしれません。"
                              : "サーバーが応答しません。";
    case TcpOutcome::kClosed:
      return "接続できましたが、サーバーが接続を切りました。";
    default:
      return "サーバーに接続できません。";
  }
}

}  // namespace

std::optional<ServerPlace> PlaceOfServer(std::string_view server, bool authenticates) {
  std::string_view host = Trimmed(server);
  std::string_view port;
  bool hasPort = false;
  const std::size_t closing = host.starts_with('[') ? host.find(']') : std::string_view::npos;
  const std::size_t colon = host.find(':', closing == std::string_view::npos ? 0 : closing);
  if (colon != std::string_view::npos) {
    hasPort = true;
    port = host.substr(colon + 1);
    host = host.substr(0, colon);
  }
  if (closing != std::string_view::npos) {
    if (host.size() != closing + 1) return std::nullopt;
    host = host.substr(1, closing - 1);
  }
  if (host.empty() || host.find_first_of(" \t") != std::string_view::npos) return std::nullopt;
  if (!hasPort) {
    const int first = authenticates ? kSubmission : kRelay;
    return ServerPlace{std::string(host), {first, kSubmission + kRelay - first}};
  }
  const std::optional<int> number = PortOf(port);
  return number ? std::optional(ServerPlace{std::string(host), {*number}}) : std::nullopt;
}

ServerAnswer AskServer(os::Tcp& tcp, const ServerPlace& place, foundation::Progress& progress) {
  ServerAnswer answer;
  const auto goesOn = [&] { return progress.Report(0.5); };
  for (const int port : place.ports) {
    progress.Begin("接続しています: " + place.host + " ポート " + std::to_string(port));
    answer.port = port;
    std::unique_ptr<os::TcpConnection> connection;
    answer.outcome = tcp.Connect(place.host, port, {kConnectPatience, goesOn}, connection);
    if (answer.outcome == TcpOutcome::kNoHost || answer.outcome == TcpOutcome::kStopped) break;
    if (answer.outcome != TcpOutcome::kOk) continue;
    answer.connected = true;
    answer.outcome = Listen(*connection, {kGreetingPatience, goesOn}, answer.greeting);
    break;
  }
  return answer;
}

bool IsReady(const ServerAnswer& answer) {
  return answer.outcome == TcpOutcome::kOk && answer.greeting.starts_with("220");
}

std::string Describe(const ServerPlace& place, const ServerAnswer& answer) {
  if (answer.outcome == TcpOutcome::kStopped) return {};
  std::string text = place.host + " ポート " + std::to_string(answer.port) + "\n";
  if (IsReady(answer))
    text += "メールサーバーが応答しました。";
  else if (answer.outcome == TcpOutcome::kOk)
    text += "サーバーは応答しましたが、いまメールを受け付けません。";
  else
    text += Why(answer);
  if (!answer.greeting.empty()) text += "\n\n" + answer.greeting;
  return text;
}

}  // namespace kova::mail
