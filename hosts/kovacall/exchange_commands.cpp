#include "hosts/kovacall/exchange_commands.h"

#include <limits>

#include "cashless/exchange.h"
#include "hosts/console/console.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using cashless::Exchange;
using cashless::ExchangeFiles;
using cashless::PaymentRequest;
using cashless::PaymentView;
using Arguments = std::vector<std::string>;

std::string Utf8(std::string_view text) { return ShowControls(text932::ToUtf8(text)); }

std::string FolderOf(Practice& practice) {
  const std::string folder = cashless::ExchangeFolder(practice.DatabaseFolder());
  if (folder.empty()) throw UsageError("the profile names no database folder");
  return folder;
}

std::int32_t Number(const Arguments& arguments, std::size_t at, const char* what) {
  if (at >= arguments.size()) return 0;
  return static_cast<std::int32_t>(NumberArgument(arguments[at], what,
                                                  std::numeric_limits<std::int32_t>::min(),
                                                  std::numeric_limits<std::int32_t>::max()));
}

PaymentRequest RequestOf(const Arguments& arguments, const std::string& name) {
  if (arguments.size() < 3) throw UsageError("start takes a base name and an amount");
  PaymentRequest request;
  request.name = name;
  request.amount = Number(arguments, 2, "AMOUNT");
  request.kind = Number(arguments, 3, "KIND");
  request.payType = Number(arguments, 4, "PAYTYPE");
  request.training = Number(arguments, 5, "TRAINING");
  request.sequence = Number(arguments, 6, "SEQUENCE");
  request.taxOrOther = Number(arguments, 7, "TAX");
  if (arguments.size() > 8) request.text = TextArgument(arguments[8], "TEXT");
  return request;
}

const char* NameOf(PaymentView::Closing closing) {
  if (closing == PaymentView::Closing::kStays) return "";
  return closing == PaymentView::Closing::kWithOk ? "ok" : "cancel";
}

const char* NameOf(cashless::PaymentOutcome outcome) {
  switch (outcome) {
    case cashless::PaymentOutcome::kOpen:
      return "open";
    case cashless::PaymentOutcome::kPaid:
      return "paid";
    case cashless::PaymentOutcome::kNotPaid:
      return "not-paid";
    case cashless::PaymentOutcome::kUnknown:
      break;
  }
  return "unknown";
}

void PrintView(const PaymentView& view) {
  Print("state=" + std::to_string(view.state) + "\ntext=" + Utf8(view.statusText) +
        "\ncode=" + (view.resultCode ? std::to_string(*view.resultCode) : "") +
        "\nmessage=" + Utf8(view.message) + "\nnote=" + Utf8(view.note) +
        "\ncancel=" + Utf8(view.cancelCaption) + "\nticking=" + (view.isTicking ? "1" : "0") +
        "\ncloses=" + NameOf(view.closing) + "\noutcome=" + NameOf(view.outcome) + "\n");
}

void PrintFiles(const ExchangeFiles& files) {
  std::string there;
  for (const std::string& extension : files.There()) there += (there.empty() ? "" : " ") + extension;
  Print("status=" + std::to_string(static_cast<int>(files.Status())) + "\nbase=" + Utf8(files.Path("")) +
        "\nfiles=" + there + "\n");
}

void RunExchange(const Arguments& arguments, Practice& practice) {
  const bool isStart = !arguments.empty() && arguments[0] == "start";
  if (arguments.size() < 2 || arguments.size() > (isStart ? 9 : 2))
    throw UsageError("takes start, tick, cancel or status, and a base name");
  const std::string name = TextArgument(arguments[1], "BASE");
  const std::string folder = FolderOf(practice);
  // The library's journal is not written: this is no payment of a workstation.
  Exchange exchange(os::RealFiles(), folder, nullptr);
  if (isStart) {
    (void)exchange.Start(RequestOf(arguments, name), os::LocalTime());
  } else {
    exchange.Resume(name);
    if (arguments[0] == "tick") {
      (void)exchange.Tick();
    } else if (arguments[0] == "cancel") {
      (void)exchange.Cancel();
    } else if (arguments[0] != "status") {
      throw UsageError("start, tick, cancel or status, not " + ShowControls(arguments[0]));
    }
  }
  if (arguments[0] != "status") PrintView(exchange.Shown());
  PrintFiles(ExchangeFiles(os::RealFiles(), folder, name));
}

}  // namespace

const std::vector<TableCommand>& ExchangeCommands() {
  static const std::vector<TableCommand> commands = {
      {"exchange",
       "start|tick|cancel|status BASE [AMOUNT [KIND [PAYTYPE [TRAINING [SEQUENCE [TAX [TEXT]]]]]]]",
       "one step of a payment through the terminal's bridge, with files of that base name in the exchange "
       "folder: start asks for AMOUNT, tick and cancel do what the payment dialog does; prints what the "
       "dialog "
       "would show, and the files. Every step but start takes the payment for one that is waited for",
       &RunExchange},
  };
  return commands;
}

}  // namespace kova::hosts
