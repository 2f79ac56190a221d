#include "platform/os/shell.h"

namespace kova::os {
namespace {

class NoShell final : public Shell {
 public:
  bool Open(std::string_view) override { return false; }
};

}  // namespace

Shell& RealShell() {
  static NoShell shell;
  return shell;
}

}  // namespace kova::os
