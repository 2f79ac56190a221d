#pragma once

// The cash changer, by the suite's program for it. docs/cashless.md has its command line.

#include <string>

#include "cashless/payment_entry.h"
#include "platform/os/child_programs.h"

namespace kova::cashless {

/// How long the changer may take, in milliseconds: somebody puts notes and coins into it.
inline constexpr int kChangerPatience = 5 * 60 * 1000;

class ChangerProgram final : public CashChanger {
 public:
  /// `device` is the option's text, which the program is told. `programs` must outlive this object.
  ChangerProgram(os::ChildPrograms& programs, std::string device);

  /// 1 when the program said that the money was moved, else 0.
  int Exchange(std::int32_t amount, const std::optional<std::string>& method) override;

 private:
  os::ChildPrograms& programs_;
  std::string device_;
};

}  // namespace kova::cashless
