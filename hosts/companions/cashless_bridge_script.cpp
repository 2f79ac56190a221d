#include "hosts/companions/cashless_bridge_script.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "hosts/companions/command_line.h"
#include "platform/os/paths.h"

namespace kova::companions {
namespace {

using os::FileOutcome;

constexpr std::size_t kRequestLimit = 4096;
constexpr std::size_t kExtension = 4;

bool ReadNumber(std::string_view text, int least, int most, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= least && number <= most;
}

bool ReadWord(std::string_view word, BridgeScript& script) {
  constexpr int kLongest = 3600000;
  // Whoever starts programs by their arguments may quote each.
  if (word.size() >= 2 && word.front() == '"' && word.back() == '"') word = word.substr(1, word.size() - 2);
  const std::size_t colon = std::min(word.find(':'), word.size());
  const std::string_view key = word.substr(0, colon);
  const std::string_view value = word.substr(std::min(colon + 1, word.size()));
  int number = 0;
  if (key == "/TAKE") return ReadNumber(value, 0, kLongest, script.takeUpAfter);
  if (key == "/WORK") return ReadNumber(value, 0, kLongest, script.workFor);
  if (key == "/DIE" && ReadNumber(value, 1, 5, number)) {
    script.diesAt = static_cast<BridgeStep>(number);
    return true;
  }
  if (key == "/RESULT" && ReadNumber(value, 0, 999999, number)) {
    script.refusal = number;
    return true;
  }
  if (word == "/BOTH") return script.leavesBoth = true;
  if (word == "/CHARGE") return script.chargesAnyway = true;
  return word == "/ONCE" && (script.endsAfterOne = true);
}

}  // namespace

std::optional<BridgeScript> ParseBridgeScript(std::string_view line) {
  BridgeScript script;
  while (!line.empty()) {
    const std::string_view word = line.substr(0, line.find(' '));
    if (!word.empty() && !ReadWord(word, script)) return std::nullopt;
    line.remove_prefix(std::min(word.size() + 1, line.size()));
  }
  return script;
}

CashlessBridge::CashlessBridge(os::Files& files, std::string_view folder, const BridgeScript& script)
    : files_(files), folder_(os::AddTrailingDelimiter(folder)), script_(script) {}

CashlessBridge::State CashlessBridge::Step(std::int64_t now) {
  if (state_ == State::kWatching) Watch(now);
  if (state_ == State::kTakingUp && now >= due_) TakeUp(now);
  if (state_ == State::kWorking && now >= due_) Finish();
  return state_;
}

void CashlessBridge::Watch(std::int64_t now) {
  std::vector<std::string> names;
  if (files_.List(folder_, names) != FileOutcome::kOk) return;
  const auto request = std::find_if(names.begin(), names.end(),
                                    [](const std::string& name) { return FitsPattern(name, "*.dat"); });
  if (request == names.end()) return;
  base_ = folder_ + request->substr(0, request->size() - kExtension);
  due_ = now + script_.takeUpAfter;
  state_ = State::kTakingUp;
}

void CashlessBridge::TakeUp(std::int64_t now) {
  if (Dies(BridgeStep::kBeforeTakingUp)) return;
  // By renaming first: a request that was withdrawn meanwhile is not there to be renamed.
  state_ = State::kWatching;
  if (files_.Rename(base_ + ".dat", base_ + ".pro") != FileOutcome::kOk) return;
  if (files_.Read(base_ + ".pro", kRequestLimit, request_) != FileOutcome::kOk) return;
  due_ = now + script_.workFor;
  state_ = State::kWorking;
}

void CashlessBridge::Finish() {
  if (Dies(BridgeStep::kBeforeCharging)) return;
  if (!script_.refusal || script_.chargesAnyway) ++charged_;
  if (Dies(BridgeStep::kAfterCharging) || !LeaveResult() || Dies(BridgeStep::kAfterResult)) return;
  (void)files_.Delete(base_ + ".pro");
  state_ = script_.endsAfterOne ? State::kDone : State::kWatching;
}

// False when the bridge is dead after it.
bool CashlessBridge::LeaveResult() {
  const std::string line = "$RESULT=" + std::to_string(script_.refusal.value_or(0)) + "\n";
  if (script_.leavesBoth || !script_.refusal) (void)files_.Replace(base_ + ".fin", "");
  const bool dies = Dies(BridgeStep::kWritingResult);
  if (script_.leavesBoth || script_.refusal)
    (void)files_.Replace(base_ + ".err", dies ? line.substr(0, line.size() - 2) : line);
  return !dies;
}

bool CashlessBridge::Dies(BridgeStep step) {
  if (script_.diesAt != step) return false;
  state_ = State::kDead;
  return true;
}

}  // namespace kova::companions
