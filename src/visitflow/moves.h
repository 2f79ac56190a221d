#pragma once

// The six moves of the board: decided as plain values, then carried out on the record store.

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/settings.h"
#include "platform/recordstore/kovadbcall.h"
#include "visitflow/board.h"

namespace kova::visitflow {

/// The board's buttons; the numbers are the system's own.
enum class BoardButton {
  kBeforeToNext = 8131,
  kStageToBefore = 8132,
  kStageForward = 8133,
  kStageBack = 8134,
  kStageToFinished = 8127,
  kFinishedBack = 8129,
};

/// True for one of the numbers above.
bool IsBoardButton(int number);

/// What a move does to a reservation.
struct MovePlan {
  std::string stageCode;      // two digits: the new stage
  std::optional<bool> visit;  // true: the visited step comes first; false: the not-visited step
  bool operator==(const MovePlan&) const = default;
};

/// The plan of a button for a reservation that stands in `stageCode`. A stage that is not known (any more)
/// counts as before the first.
MovePlan PlanMove(BoardButton button, std::string_view stageCode, const std::vector<Stage>& stages);

/// Which buttons can be pressed, by which lists have a selection.
struct EnabledButtons {
  bool beforeToNext = false;
  bool stageMoves = false;  // 8132, 8133, 8134, 8127
  bool finishedBack = false;
};
EnabledButtons EnabledBy(bool beforeSelected, bool stagedSelected, bool finishedSelected);

/// What became of a move.
enum class MoveOutcome {
  kDone,
  kGone,          // the reservation is not there any more
  kMovedByOther,  // it stands in another stage than the board showed: nothing was written
  kReceipted,     // its collected charge is receipted: nothing was written
  kFailed,        // the record store refused: nothing was written
};

/// The mails that a move asks for. They are sent when the move is committed and shown, as the mail program
/// may take a minute.
struct MailsToSend {
  bool visit = false;
  bool finished = false;
  tagRESERVATION reservation{};
};

struct MoveResult {
  MoveOutcome outcome = MoveOutcome::kFailed;
  int result = 0;  // the record store's, for kFailed
  MailsToSend mails;
};

/// Moves one reservation, everything in one transaction: visited flag, sale or its deletion, the patient's
/// finished date, stage code, stage time and finish time. On any outcome but kDone the store is as it was.
///
/// The visited step makes a sale only of a reservation with a fee that has none yet. The not-visited step
/// deletes the sale with its items and its charges. Mails are asked for where "GLOBAL"/"WatchOption" is 1:
/// the visit mail with every visited step, the finished mail when the finish time was set.
///
/// @param shownStage  the stage code that the board showed; when the store holds another one the move is not
/// made
/// @param now         local time; the stage time is "%02d%02d" of it ("-1-1" when there is none)
MoveResult MoveReservation(CKovaDBSys* db, const foundation::SettingsSnapshot& settings, std::string_view key,
                           std::string_view shownStage, BoardButton button, const std::vector<Stage>& stages,
                           const std::optional<std::tm>& now);

/// The message for a receipted charge.
extern const std::string_view kReceiptedMessage;

}  // namespace kova::visitflow
