// An error file of any bytes: a waiting payment ends with the code that it names, and never as paid.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "cashless/exchange.h"
#include "cashless/result_codes.h"
#include "foundation/number_text.h"
#include "platform/os/testing/fake_files.h"

namespace {

using namespace kova::cashless;

void Require(bool holds) {
  if (!holds) std::abort();
}

// The rule once more, told by positions in the whole text.
int ExpectedCode(const std::string& text) {
  const std::string marked = "\n" + text;
  const std::size_t at = marked.find("\n$RESULT=");
  if (at == std::string::npos) return 99;
  const std::size_t begin = at + 9;
  return kova::foundation::ReadInteger(marked.substr(begin, marked.find('\n', begin) - begin));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  kova::os::testing::FakeFiles files;
  files.folders.insert("X");
  Exchange exchange(files, "X", nullptr);
  exchange.Resume("p");
  files.contents["X\\p.err"] = input;
  files.contents["X\\p.pro"] = "";
  const PaymentView& view = exchange.Tick();
  Require(view.state == kIdle && view.kindsEnabled && view.closing == PaymentView::Closing::kStays);
  Require(view.resultCode == ExpectedCode(input) && files.contents.empty());
  Require(view.message == ResultMessage(*view.resultCode) &&
          view.outcome == OutcomeOfFailure(*view.resultCode));
  Require(view.outcome != PaymentOutcome::kPaid && view.outcome != PaymentOutcome::kOpen);
  Require(view.note.empty() == (view.outcome == PaymentOutcome::kNotPaid));
  return 0;
}
