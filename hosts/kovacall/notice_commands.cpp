#include "hosts/kovacall/notice_commands.h"

#include <ctime>

#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "mail/last_login.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

/// YYYYMMDD, with hhmm or hhmmss behind it or not.
std::tm TimeArgument(const std::string& text) {
  if (text.size() != 8 && text.size() != 12 && text.size() != 14)
    throw UsageError("TIME is YYYYMMDD, YYYYMMDDhhmm or YYYYMMDDhhmmss");
  const std::string whole = text + std::string(14 - text.size(), '0');
  const auto part = [&](std::size_t from, std::size_t length, int least, int most) {
    return static_cast<int>(NumberArgument(whole.substr(from, length), "TIME", least, most));
  };
  std::tm time{};
  time.tm_year = part(0, 4, 1, 9999) - 1900;
  time.tm_mon = part(4, 2, 1, 12) - 1;
  time.tm_mday = part(6, 2, 1, 31);
  time.tm_hour = part(8, 2, 0, 23);
  time.tm_min = part(10, 2, 0, 59);
  time.tm_sec = part(12, 2, 0, 59);
  return time;
}

void RunAppliLastLoginStr(const std::vector<std::string>& arguments, Practice&) {
  const bool hasNow = arguments.size() == 3 && arguments[1] == "--now";
  if (arguments.size() != 1 && !hasNow) throw UsageError("takes STAMP [--now TIME]");
  const std::string stamp = TextArgument(arguments[0], "STAMP");
  const std::string shown = hasNow ? mail::LastLoginText(stamp, TimeArgument(arguments[2])).value_or("")
                                   : CKovaSubTools::AppliLastLoginStr(stamp.c_str()).GetString();
  Print(ShowControls(text932::ToUtf8(shown)) + "\n");
}

}  // namespace

const std::vector<TableCommand>& NoticeCommands() {
  static const std::vector<TableCommand> commands = {
      {"AppliLastLoginStr", "STAMP [--now TIME]",
       "the last login of a patient's application and its age, now or at TIME (YYYYMMDDhhmmss, local time)",
       &RunAppliLastLoginStr},
  };
  return commands;
}

}  // namespace kova::hosts
