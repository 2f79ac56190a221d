#include "mail/notice.h"

#include <cstdio>

#include "foundation/civil_day.h"
#include "platform/os/profile_lines.h"
#include "platform/text932/cp932.h"

namespace kova::mail {
namespace {

// Relied on by the programs around; do not change.
constexpr std::string_view kNoApplication = "++++++++++";
constexpr std::string_view kNotForApplication = "$_NOAPPLI";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kUnfinished = ".notice_temp";
constexpr std::string_view kFinished = ".notice";

constexpr std::size_t kLongestId = 100;  // bytes of a file name
constexpr int kAttempts = 1000;
constexpr std::int64_t kDay = 86'400'000;  // milliseconds

std::string DateText(std::int64_t now) {
  const foundation::CivilDay date =
      foundation::CivilDayOf(static_cast<int>(now / kDay) + foundation::kDayOf1970);
  char text[40];
  std::snprintf(text, sizeof text, "%04d%02d%02d", date.year, date.month, date.day);
  return text;
}

std::string StampText(std::int64_t now) {
  const auto ofDay = static_cast<int>(now % kDay);
  const int seconds = ofDay / 1000;
  char text[40];
  std::snprintf(text, sizeof text, "_%02d%02d%02d_%03d", seconds / 3600, seconds / 60 % 60, seconds % 60,
                ofDay % 1000);
  return DateText(now) + text;
}

bool CanStandInName(char c) {
  return static_cast<unsigned char>(c) >= 0x20 &&
         std::string_view("\\/:*?\"<>|").find(c) == std::string_view::npos;
}

// A line stays one line, or the reader would take its rest for the next one.
std::string Line(std::string_view text) {
  std::string line(os::CutAtNul(text));
  for (char& c : line) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return line.append(kLineEnd);
}

}  // namespace

bool HasApplication(std::string_view applicationId) {
  const std::string_view id = os::CutAtNul(applicationId);
  return !id.empty() && id != kNoApplication;
}

std::string NoticeBody(std::string_view body) {
  std::string text(os::CutAtNul(body));
  for (std::size_t at = 0; (at = text.find(kNotForApplication)) != std::string::npos;) {
    const std::size_t end = text.find('\n', at);
    text.erase(at, end == std::string::npos ? end : end + 1 - at);
  }
  if (text.ends_with(kLineEnd)) text.resize(text.size() - kLineEnd.size());
  return text;
}

std::string NoticeText(const Notice& notice, std::int64_t now) {
  return Line(notice.applicationId) + Line(DateText(now)) + Line(notice.title) + NoticeBody(notice.body);
}

std::string NoticeName(std::string_view applicationId, std::string_view adapterAddress, std::int64_t now) {
  const std::string_view id = text932::CutAtCharacter(os::CutAtNul(applicationId), kLongestId);
  std::string name;
  for (std::size_t at = 0; at < id.size();) {
    const std::size_t length = text932::CharLength(id, at);
    if (length == 1 && !CanStandInName(id[at]))
      name += '_';
    else
      name.append(id, at, length);
    at += length;
  }
  return name.append("_").append(adapterAddress).append("_").append(StampText(now));
}

os::FileOutcome WriteNotice(os::Files& files, std::string_view folder, const Notice& notice,
                            std::string_view adapterAddress, std::int64_t now) {
  const std::string text = NoticeText(notice, now);
  os::FileOutcome outcome = os::FileOutcome::kChanged;
  for (int attempt = 0; attempt < kAttempts && outcome == os::FileOutcome::kChanged; ++attempt) {
    const std::string path =
        std::string(os::CutAtNul(folder)) + NoticeName(notice.applicationId, adapterAddress, now + attempt);
    const std::string unfinished = path + std::string(kUnfinished);
    outcome = files.Create(unfinished, text);
    if (outcome != os::FileOutcome::kOk) continue;
    outcome = files.Rename(unfinished, path + std::string(kFinished));
    if (outcome != os::FileOutcome::kOk) (void)files.Delete(unfinished);
  }
  return outcome;
}

}  // namespace kova::mail
