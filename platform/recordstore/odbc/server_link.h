#pragma once

// The connection to whichever of the servers can be had. Every question goes through a worker thread that is waited for with a
// bound: whatever a driver does when a machine vanishes, the operation ends with a result.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/os/worker.h"
#include "platform/recordstore/odbc/session.h"

namespace kova::store {

/// A result that says something of the request or the record, and nothing of the store: a transaction goes on after it.
bool IsAnswer(Result result);

class ServerLink {
 public:
  /// Owns what it uses, or shares it: it may outlive the call that it is handed to.
  using Work = std::function<Result(odbc::Session&)>;

  /// `wantsUnfinished`: also to a database that a migration is not finished in.
  ServerLink(const ServerSettings& settings, bool wantsUnfinished);
  ~ServerLink();

  const Dialect& GetDialect() const { return *dialect_; }
  /// An operation begins: it ends within 10 s.
  void StartClock();
  int Left() const;  ///< milliseconds of the operation's time
  void Wait(int milliseconds) const;

  bool IsConnected() const { return session_ != nullptr; }
  /// Connects to the first server that can be had, beginning with the one that was in use.
  Result Connect();
  /// Asks on this connection only: kUnreachable when there is none. A lost one is dropped.
  Result Ask(const Work& work);
  /// The same, waiting for the answer to a commit: leaves time to look up what became of it.
  Result AskToCommit(const Work& work);
  /// Asks on whichever connection can be had: the one that there is may have been lost since the last question, which nobody
  /// has noticed yet.
  Result AskAnywhere(const Work& work);

  /// What was said last of a failure, UTF-8.
  const std::string& Problem() const { return problem_; }
  std::uint64_t RoundTrips() const { return roundTrips_; }

 private:
  Result ConnectTo(std::size_t host);
  Result Hand(const Work& work, int milliseconds);
  Result AskFor(const Work& work, int milliseconds);
  void Drop();
  void NoteLost();

  const ServerSettings settings_;
  const bool wantsUnfinished_;
  const std::shared_ptr<const Dialect> dialect_;
  std::shared_ptr<odbc::Session> session_;
  std::unique_ptr<os::Worker> worker_;
  std::size_t host_ = 0;   // that the session is on, or that is tried first
  std::string sessionId_;  // of the open session, on its server
  std::string lostId_;     // of the session that was lost last, on the server `lostHost_`
  std::size_t lostHost_ = 0;
  std::string problem_;
  std::int64_t deadline_ = 0;  // of os::MonotonicMilliseconds, as the next
  std::int64_t restsUntil_ = 0;
  std::uint64_t roundTrips_ = 0;
};

}  // namespace kova::store
