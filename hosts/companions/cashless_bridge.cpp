// CashlessBridge: stands in for the program between the suite and a payment terminal. It charges nobody.

#include <stdexcept>
#include <string>

#include "hosts/companions/cashless_bridge_script.h"
#include "hosts/companions/companion.h"
#include "platform/os/clock.h"

namespace kova::companions {
namespace {

constexpr int kPause = 20;  // milliseconds

class BridgeDied : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

void Main(std::string_view line) {
  const auto script = ParseBridgeScript(line);
  const std::string folder = EnvironmentText("KOVA_CASHLESS");
  if (!script || folder.empty()) {
    throw CommandLineError(
        "CashlessBridge [/TAKE:ms] [/WORK:ms] [/RESULT:code] [/BOTH] [/CHARGE] [/DIE:1-5] [/ONCE], with the "
        "exchange folder in KOVA_CASHLESS");
  }
  CashlessBridge bridge(os::RealFiles(), folder, *script);
  for (;;) {
    const auto state = bridge.Step(os::MonotonicMilliseconds());
    if (state == CashlessBridge::State::kDone) return;
    if (state == CashlessBridge::State::kDead) throw BridgeDied("died as it was told");
    os::SleepMilliseconds(kPause);
  }
}

}  // namespace
}  // namespace kova::companions

int main(int argc, char** argv) {
  return kova::companions::RunCompanion("CashlessBridge", argc, argv, kova::companions::Main);
}
