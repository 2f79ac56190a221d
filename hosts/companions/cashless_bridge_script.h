#pragma once

// A payment bridge that does what it is told: what it does with a request and when, and where it dies. The
// program around it is cashless_bridge.cpp; docs/cashless.md has its command line.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/os/files.h"

namespace kova::companions {

/// Where a bridge dies.
enum class BridgeStep {
  kNever = 0,
  kBeforeTakingUp = 1,
  kBeforeCharging = 2,  // ".pro" is there
  kAfterCharging = 3,   // the money is taken, and nothing says so
  kWritingResult = 4,   // the result is there; of ".err" the end is missing
  kAfterResult = 5,     // ".pro" is still there beside the result
};

struct BridgeScript {
  int takeUpAfter = 0;         // milliseconds from seeing a request
  int workFor = 1000;          // milliseconds from taking it up to the result
  std::optional<int> refusal;  // the code for ".err"; nothing: ".fin"
  bool leavesBoth = false;     // ".fin" and ".err"
  bool chargesAnyway = false;  // the money is taken although it is refused, as after a lost answer
  BridgeStep diesAt = BridgeStep::kNever;
  bool endsAfterOne = false;
};

/// "/TAKE:500 /WORK:2000 /RESULT:112 /BOTH /CHARGE /DIE:3 /ONCE", in any order, each of them optional.
/// Nothing for any other line.
std::optional<BridgeScript> ParseBridgeScript(std::string_view line);

class CashlessBridge {
 public:
  /// Watches that folder. `files` must outlive this object.
  CashlessBridge(os::Files& files, std::string_view folder, const BridgeScript& script);

  enum class State { kWatching, kTakingUp, kWorking, kDone, kDead };

  /// Does what is due at `now` (milliseconds of a clock that never goes back). kDone after the one payment of
  /// a script that ends then; kDead once the script let it die. Both are final.
  State Step(std::int64_t now);

  /// How many payments the terminal has charged.
  int Charged() const { return charged_; }
  /// The request that was taken up last, as it was read.
  const std::string& Request() const { return request_; }

 private:
  void Watch(std::int64_t now);
  void TakeUp(std::int64_t now);
  void Finish();
  bool LeaveResult();
  bool Dies(BridgeStep step);

  os::Files& files_;
  std::string folder_;
  BridgeScript script_;
  State state_ = State::kWatching;
  std::int64_t due_ = 0;
  std::string base_;  // full name without extension
  std::string request_;
  int charged_ = 0;
};

}  // namespace kova::companions
