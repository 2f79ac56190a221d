#include "platform/recordstore/odbc/server_link.h"

#include <algorithm>
#include <utility>

#include "platform/os/clock.h"
#include "platform/recordstore/odbc/server_layout.h"

namespace kova::store {
namespace {

constexpr int kLongestOperation = 9500;  // ms
constexpr int kLongestConnect = 3500;    // to one server
constexpr int kLongestAnswer = 7000;     // the wait for a lock, which is 5 s, and the rest
constexpr int kLongestCommit = 5000;
constexpr int kLongestGoodbye = 500;
constexpr int kLongestRest = 3000;  // after all servers were tried in vain
constexpr int kSilence = 1000;      // a server that takes longer to be lost than this does not answer

}  // namespace

bool IsAnswer(Result result) {
  return result == Result::kDone || result == Result::kDuplicate || result == Result::kChanged;
}

ServerLink::ServerLink(const ServerSettings& settings, bool wantsUnfinished)
    : settings_(settings), wantsUnfinished_(wantsUnfinished), dialect_(MakeDialect(settings.kind)) {}

ServerLink::~ServerLink() { Drop(); }

void ServerLink::StartClock() { deadline_ = os::MonotonicMilliseconds() + kLongestOperation; }

int ServerLink::Left() const {
  return static_cast<int>(std::max<std::int64_t>(deadline_ - os::MonotonicMilliseconds(), 0));
}

void ServerLink::Wait(int milliseconds) const { os::SleepMilliseconds(std::min(Left(), milliseconds)); }

// Does `work` with the session on the worker's thread.
Result ServerLink::Hand(const Work& work, int milliseconds) {
  auto result = std::make_shared<Result>(Result::kFailed);
  const std::uint64_t before = session_->RoundTrips();
  const bool isDone = worker_->Run(
      [result, session = session_, work]() mutable {
        try {
          *result = work(*session);
        } catch (const std::exception&) {
          // Memory ran out; the result says that it failed.
        }
      },
      milliseconds);
  if (!isDone) {
    problem_ = settings_.hosts[host_].Text() + ": no answer";
    NoteLost();
    session_.reset();  // the worker's thread ends it, once the driver comes back
    worker_.reset();
    return Result::kUnreachable;
  }
  roundTrips_ += session_->RoundTrips() - before;
  if (!IsAnswer(*result)) problem_ = settings_.hosts[host_].Text() + ": " + session_->Problem();
  return *result;
}

Result ServerLink::AskFor(const Work& work, int milliseconds) {
  if (session_ == nullptr) return Result::kUnreachable;
  const std::int64_t begun = os::MonotonicMilliseconds();
  const Result result = Hand(work, std::min(Left(), milliseconds));
  if (result != Result::kUnreachable) return result;
  Drop();
  // From one that was ended it may be had again at once; on one that is silent the rest of the time is not spent as well.
  if (os::MonotonicMilliseconds() - begun > kSilence) host_ = (host_ + 1) % settings_.hosts.size();
  return result;
}

Result ServerLink::Ask(const Work& work) { return AskFor(work, kLongestAnswer); }

Result ServerLink::AskToCommit(const Work& work) { return AskFor(work, kLongestCommit); }

Result ServerLink::AskAnywhere(const Work& work) {
  if (IsConnected()) {
    const Result result = Ask(work);
    if (result != Result::kUnreachable) return result;
  }
  const Result connected = Connect();
  return connected == Result::kDone ? Ask(work) : connected;
}

Result ServerLink::Connect() {
  Result result = Result::kUnreachable;
  const std::int64_t begun = os::MonotonicMilliseconds();
  if (begun < restsUntil_) return result;
  const std::size_t hosts = settings_.hosts.size(), first = host_;
  for (std::size_t i = 0; i < hosts && Left() > 0; ++i) {
    result = ConnectTo((first + i) % hosts);
    if (result != Result::kUnreachable) return result;
  }
  // Whoever asks again and again, as a board that ticks, is not to spend all of his time waiting.
  const std::int64_t now = os::MonotonicMilliseconds();
  restsUntil_ = now + std::min<std::int64_t>(now - begun, kLongestRest);
  return result;
}

Result ServerLink::ConnectTo(std::size_t host) {
  host_ = host;
  worker_ = os::Worker::Start();
  if (worker_ == nullptr) return Result::kFailed;
  session_ = std::make_shared<odbc::Session>(dialect_);
  const std::string lost = lostHost_ == host ? lostId_ : std::string();
  const Result result = Hand(
      [settings = settings_, wantsUnfinished = wantsUnfinished_, address = settings_.hosts[host], dialect = dialect_,
       lost](odbc::Session& session) {
        const Result opened = session.Open(settings, address, settings.database);
        if (opened != Result::kDone) return opened;
        // What this workstation held there, it holds no more. An account may end its own sessions.
        if (!lost.empty()) (void)session.Run(dialect->EndSessionSql(lost));
        return CheckServerLayout(session, wantsUnfinished);
      },
      std::min(Left(), kLongestConnect));
  if (result != Result::kDone) {
    Drop();
    return result;
  }
  sessionId_ = session_->Id();
  if (lostHost_ == host) lostId_.clear();
  return result;
}

void ServerLink::NoteLost() {
  if (sessionId_.empty()) return;
  lostId_ = std::exchange(sessionId_, {});
  lostHost_ = host_;
}

void ServerLink::Drop() {
  if (session_ != nullptr) {
    NoteLost();
    (void)worker_->Run([session = std::move(session_)]() mutable { session.reset(); }, kLongestGoodbye);
    session_.reset();
  }
  worker_.reset();
}

}  // namespace kova::store
