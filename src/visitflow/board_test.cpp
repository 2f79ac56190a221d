#include "visitflow/board.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

#include "visitflow/board_session.h"
#include "visitflow/moves.h"
#include "visitflow/testing/board_text.h"

namespace kova::visitflow {
namespace {

using store::PutText;
using testing::BoardText;
using testing::StagesOf;

DayRow RowOf(const std::string& key, const std::string& stageCode) {
  DayRow row;
  PutText(row.reservation.reservationNumber, key);
  PutText(row.reservation.stageCode, stageCode);
  return row;
}

// "1:00 2:10" is a day of reservation 1 in stage 00 and 2 in stage 10.
std::vector<DayRow> DayOf(const std::string& text) {
  std::vector<DayRow> rows;
  for (const std::string& word : testing::Words(text)) {
    const std::size_t colon = word.find(':');
    rows.push_back(RowOf(word.substr(0, colon), word.substr(colon + 1)));
  }
  return rows;
}

TEST(Board, PlacesRowsByStageCode) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"A10 B20", "1: 2:00 3:01 4:10 5:20 6:10", "before: 1 2 | A: 4 6 | B: 5 | done: 3"},
      {"A10 B20", "1:07 2:1 3:99 4:x 5:-1", "before: 1 2 3 4 5 | A: | B: | done:"},
      {"", "1:10 2:01 3:00 4:20", "before: 1 3 4 | done: 2"},
      {"A5 B7", "2:07 1:5 3:05", "before: | A: 1 3 | B: 2 | done:"},
      {"A1 B7", "1:01 2:1", "before: | A: 2 | B: | done: 1"},
      {"A10 B10", "1:10", "before: | A: 1 | B: | done:"},
  };
  for (const auto& [stages, day, board] : cases)
    EXPECT_EQ(BoardText(PlaceRows(DayOf(day), StagesOf(stages), true, -1), StagesOf(stages)), board) << day;
}

TEST(Board, ManyRowsAndManyStages) {
  std::vector<Stage> stages;
  for (int i = 0; i < 200; ++i) stages.push_back({i + 2, "x"});
  std::vector<DayRow> rows;
  for (int i = 0; i < 2000; ++i) rows.push_back(RowOf(std::to_string(i), std::to_string(10 + i % 90)));
  const Board board = PlaceRows(rows, stages, true, -1);
  ASSERT_EQ(board.staged.size(), 2000U);
  EXPECT_EQ(board.staged[1999].key, "1999");
  EXPECT_EQ(board.staged[1999].stage, 10 + 1999 % 90 - 2);
}

TEST(Board, Captions) {
  const struct {
    const char *number, *name, *time, *in24, *in12;
  } cases[] = {
      {"12", "山田", "0930", "12   山田              9:30", "12   山田              9:30"},
      {"12", "山田", "1415", "12   山田             14:15", "12   山田              2:15"},
      {"12", "山田", "0005", "12   山田              0:05", "12   山田              0:05"},
      {"12", "山田", "1200", "12   山田             12:00", "12   山田             12:00"},
      {"12", "山田", "930", "12   山田", "12   山田"},
      {"", "", "2359", "                      23:59", "                      11:59"},
      {"", "", "", "     ", "     "},
      {"C-12345", "表表表表表表表表表", "-1-1", "C-12345 表表表表表表表表表 -1:-1",
       "C-12345 表表表表表表表表表 -1:-1"},
  };
  for (const auto& each : cases) {
    DayRow row{{}, each.number, each.name};
    PutText(row.reservation.stageTime, each.time);
    EXPECT_EQ(CaptionOf(row, true), each.in24) << each.time;
    EXPECT_EQ(CaptionOf(row, false), each.in12) << each.time;
  }
}

TEST(Board, Tips) {
  const std::tuple<const char*, const char*, int, const char*> cases[] = {
      {"0930", "0941", 9 * 60 + 53, "予約 09:30\n移動 09:41\nこの段階 12 分"},
      {"0930", "0941", 9 * 60 + 41, "予約 09:30\n移動 09:41\nこの段階 0 分"},
      {"0930", "0941", 9 * 60 + 40, "予約 09:30\n移動 09:41"},  // the clock was set back
      {"0930", "0941", -1, "予約 09:30\n移動 09:41"},
      {"1830", "", 600, "予約 18:30"},
      {"9:30", "0941", 600, "移動 09:41\nこの段階 19 分"},
      {"2400", "-1-1", 600, ""},
      {"", "2359", 1440, "移動 23:59\nこの段階 1 分"}};
  for (const auto& [start, moved, now, tip] : cases) {
    DayRow row;
    PutText(row.reservation.startTime, start);
    PutText(row.reservation.stageTime, moved);
    EXPECT_EQ(TipOf(row, now), tip) << start << " " << moved;
  }
}

// The plans of 8131, 8132, 8133, 8134, 8127, 8129: the new stage, "+" with the visited step, "-" with the
// not-visited one.
TEST(Moves, PlansOfTheSixButtons) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"", "", " +01 00 01 -00 01 00"},
      {"", "01", " +01 00 01 -00 01 00"},
      {"A10", "00", " +10 00 10 -00 01 10"},
      {"A10", "10", " +10 00 01 -00 01 10"},
      {"A10 B5 C30", "00", " +10 00 10 -00 01 30"},
      {"A10 B5 C30", "10", " +10 00 05 -00 01 30"},
      {"A10 B5 C30", "5", " +10 00 30 10 01 30"},
      {"A10 B5 C30", "30", " +10 00 01 05 01 30"},
      {"A10 B5 C30", "77", " +10 00 10 -00 01 30"},  // a stage that is gone
  };
  for (const auto& [stages, at, plans] : cases) {
    std::string text;
    for (const int button : {8131, 8132, 8133, 8134, 8127, 8129}) {
      const MovePlan plan = PlanMove(static_cast<BoardButton>(button), at, StagesOf(stages));
      text += std::string(" ") + (!plan.visit ? "" : *plan.visit ? "+" : "-") + plan.stageCode;
    }
    EXPECT_EQ(text, plans) << stages << " at " << at;
  }
}

TEST(Moves, DropsPressButtons) {
  constexpr auto B = BoardList::kBefore, S = BoardList::kStaged, F = BoardList::kFinished;
  const std::tuple<BoardList, int, BoardList, int, bool, int> cases[] = {
      {B, -1, S, 0, true, 8131}, {B, -1, F, -1, true, 0},   {B, -1, F, -1, false, 8131},
      {B, -1, B, -1, true, 0},   {S, 1, B, -1, true, 8132}, {S, 1, F, -1, true, 8127},
      {S, 1, S, 2, true, 8133},  {S, 1, S, 0, true, 8134},  {S, 1, S, 1, true, 0},
      {S, 0, S, 2, true, 0},     {S, 0, S, -1, true, 0},    {S, -1, S, 0, true, 0},
      {F, -1, S, 0, true, 8129}, {F, -1, B, -1, true, 0},   {F, -1, B, -1, false, 8129},
  };
  for (const auto& [from, fromStage, to, toStage, hasStages, button] : cases) {
    const auto pressed = ButtonForDrop(from, fromStage, to, toStage, hasStages);
    EXPECT_EQ(pressed ? static_cast<int>(*pressed) : 0, button) << fromStage << " to " << toStage;
  }
}

// Each list with Alt+Left, Alt+Right and the buttons that its selection enables.
TEST(Moves, KeysPressButtonsOfTheirList) {
  const std::tuple<BoardList, int, int, const char*> cases[] = {
      {BoardList::kBefore, 0, 8131, "before "},
      {BoardList::kStaged, 8134, 8133, "stage "},
      {BoardList::kFinished, 8129, 0, "finished "},
  };
  for (const auto& [list, left, right, enabled] : cases) {
    for (const bool forward : {false, true}) {
      const auto pressed = ButtonForKey(list, forward);
      EXPECT_EQ(pressed ? static_cast<int>(*pressed) : 0, forward ? right : left);
    }
    const EnabledButtons by =
        EnabledBy(list == BoardList::kBefore, list == BoardList::kStaged, list == BoardList::kFinished);
    EXPECT_EQ(std::string(by.beforeToNext ? "before " : "") + (by.stageMoves ? "stage " : "") +
                  (by.finishedBack ? "finished " : ""),
              enabled);
  }
}

}  // namespace
}  // namespace kova::visitflow
