#include "visitflow/board.h"

#include <cstdio>

#include "foundation/number_text.h"

namespace kova::visitflow {
namespace {

using foundation::ReadInteger;
using store::GetText;

constexpr std::size_t kTimeLength = 4;  // HHMM
constexpr std::string_view kBeforeVisit = "00";
constexpr std::string_view kAccounted = "01";

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.resize(width, ' ');
  return text;
}

/// Minutes since midnight; -1 for what is no time of the day.
MinuteOfDay MinutesOf(std::string_view time) {
  if (time.size() != kTimeLength || time.find_first_not_of("0123456789") != std::string_view::npos) return -1;
  const int hour = ReadInteger(time.substr(0, 2));
  const int minute = ReadInteger(time.substr(2));
  return hour < 24 && minute < 60 ? hour * 60 + minute : -1;
}

void AddTimeLine(std::string& tip, std::string_view name, std::string_view time) {
  if (MinutesOf(time) < 0) return;
  if (!tip.empty()) tip += '\n';
  tip.append(name).append(time.substr(0, 2)).append(":").append(time.substr(2));
}

}  // namespace

Place PlaceOf(std::string_view stageCode, const std::vector<Stage>& stages) {
  if (stageCode.empty() || stageCode == kBeforeVisit) return {};
  if (stageCode == kAccounted) return {BoardList::kFinished};
  const int code = ReadInteger(stageCode);
  for (std::size_t i = 0; i < stages.size(); ++i) {
    if (stages[i].code == code) return {BoardList::kStaged, static_cast<int>(i)};
  }
  return {};
}

std::string CaptionOf(const DayRow& row, bool hours24) {
  std::string caption = Padded(row.caseNumber, 4) + ' ';
  const std::string_view time = GetText(row.reservation.stageTime);
  if (time.size() != kTimeLength) return caption + row.patientName;
  int hour = ReadInteger(time.substr(0, 2));
  if (!hours24) hour = (hour - 1) % 12 + 1;
  char clock[16];
  std::snprintf(clock, sizeof clock, " %2d:", hour);
  return caption.append(Padded(row.patientName, 16)).append(clock).append(time.substr(2));
}

std::string TipOf(const DayRow& row, MinuteOfDay now) {
  std::string tip;
  const std::string_view moved = GetText(row.reservation.stageTime);
  AddTimeLine(tip, "予約 ", GetText(row.reservation.startTime));
  AddTimeLine(tip, "移動 ", moved);
  const MinuteOfDay since = MinutesOf(moved);
  if (since >= 0 && since <= now) tip += "\nこの段階 " + std::to_string(now - since) + " 分";
  return tip;
}

Board PlaceRows(const std::vector<DayRow>& rows, const std::vector<Stage>& stages, bool hours24,
                MinuteOfDay now) {
  Board board;
  for (const DayRow& row : rows) {
    const Place place = PlaceOf(GetText(row.reservation.stageCode), stages);
    std::vector<BoardRow>& list = place.list == BoardList::kBefore   ? board.before
                                  : place.list == BoardList::kStaged ? board.staged
                                                                     : board.finished;
    list.push_back({std::string(GetText(row.reservation.reservationNumber)), CaptionOf(row, hours24),
                    place.stage, TipOf(row, now)});
  }
  return board;
}

}  // namespace kova::visitflow
