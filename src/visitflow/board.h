#pragma once

// The visit flow board of one day: which rows stand in which list, decided from what was read.

#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/kovadbcall.h"

namespace kova::visitflow {

/// An intermediate stage of the practice (category class "5"), in the order of the master table.
struct Stage {
  int code = 0;
  std::string name;
  bool operator==(const Stage&) const = default;
};

/// A reservation of the day with the patient's two caption fields.
struct DayRow {
  tagRESERVATION reservation{};
  std::string caseNumber;  // leads the caption
  std::string patientName;
};

/// A row as a list shows it.
struct BoardRow {
  std::string key;  // the reservation's number: the row's identity
  std::string caption;
  int stage = -1;   // index into the stages for a row of the stage list; -1 in the two other lists
  std::string tip;  // several lines: reservation time, stage time, how long in this stage
  bool operator==(const BoardRow&) const = default;
};

/// The three lists of the board.
enum class BoardList { kBefore, kStaged, kFinished };

/// Where a stage code puts a reservation.
struct Place {
  BoardList list = BoardList::kBefore;
  int stage = -1;  // index into the stages; -1 outside the stage list
  bool operator==(const Place&) const = default;
};

/// No stage code or "00": before the visit. "01": finished. Else the stage of that number; without one before
/// the visit.
Place PlaceOf(std::string_view stageCode, const std::vector<Stage>& stages);

/// The rows of the three lists.
struct Board {
  std::vector<BoardRow> before;
  std::vector<BoardRow> staged;
  std::vector<BoardRow> finished;
  bool operator==(const Board&) const = default;
};

/// Clock time of the day in minutes, for tips; -1 when the clock cannot be read or the board shows another
/// day.
using MinuteOfDay = int;

/// "%-4s %-16s %2d:%s" of case number, name, hour and minutes of the stage time; without a stage time of four
/// characters
/// "%-4s %s". With 12 hours the hour is ((hour - 1) mod 12) + 1 (so 0 stays 0; deliberate). Widths are in
/// bytes.
std::string CaptionOf(const DayRow& row, bool hours24);

/// The tip of a row, a line each with "\n" between: "予約 09:30", "移動 09:41", "この段階 12 分". A line
/// whose time is missing is left out, the last one also when the time lies ahead of now: a clock may have
/// been set back.
std::string TipOf(const DayRow& row, MinuteOfDay now);

/// Places every row, in the order of `rows`.
Board PlaceRows(const std::vector<DayRow>& rows, const std::vector<Stage>& stages, bool hours24,
                MinuteOfDay now);

/// What a read of the stages gave.
struct StagesRead {
  int result = 0;  // the record store's; the stages count only when 0
  std::vector<Stage> stages;
};

/// The stages of the practice; retired ones left out.
StagesRead ReadStages(CKovaDBSys* db);

/// What a read of the day gave.
struct DayRead {
  int result = 0;  // the record store's; the rows count only when 0
  std::vector<DayRow> rows;
};

/// The day's reservations of status below 2 whose patient exists, in order of time, as they stand at one
/// moment. The name is the patient's other one where the first is empty.
DayRead ReadDay(CKovaDBSys* db, std::string_view date);

/// A text that changes whenever something that the board shows may have changed: a reservation or a patient.
/// It costs one look at the tables' change stamps. False when it cannot be told.
[[nodiscard]] bool ReadBoardStamp(CKovaDBSys* db, std::string& stamp);

}  // namespace kova::visitflow
