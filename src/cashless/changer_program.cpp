#include "cashless/changer_program.h"

#include <utility>

#include "cashless/exchange_files.h"

namespace kova::cashless {

ChangerProgram::ChangerProgram(os::ChildPrograms& programs, std::string device)
    : programs_(programs), device_(std::move(device)) {}

int ChangerProgram::Exchange(std::int32_t amount, const std::optional<std::string>& method) {
  std::string command =
      "Option\\CashChanger.exe /AMOUNT:" + std::to_string(amount) + " /DEVICE:" + OneLine(device_);
  if (method) command += " /METHOD:" + OneLine(*method);
  const os::ChildResult result = programs_.Run(command, kChangerPatience);
  return result.outcome == os::ChildOutcome::kExited && result.exitCode == 0 ? 1 : 0;
}

}  // namespace kova::cashless
