#pragma once

// One board at work, without its window: what it shows now, and what pressing something does. The window and
// the console host stand on it alike.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/prompts.h"
#include "foundation/settings_store.h"
#include "visitflow/board.h"
#include "visitflow/moves.h"

namespace kova::visitflow {

/// What a session stands on; all must outlive it.
struct BoardDesk {
  CKovaDBSys* db;
  foundation::SettingsStore& settings;
  foundation::Prompts& prompts;
  /// Sends the mails of a committed move ("WatchOption" has been looked at already).
  std::function<void(const MailsToSend& mails)> sendMails;
  /// Local time now; nothing when the clock cannot be read.
  std::function<std::optional<std::tm>()> clock;
  /// Opens the connection anew, before a reading that follows a failed one; may be empty.
  std::function<void()> reconnect = {};
};

/// What became of a row that was to be moved.
struct Moved {
  std::string key;
  MoveOutcome outcome;
};

class BoardSession {
 public:
  BoardSession(BoardDesk desk, std::string date);

  /// Reads the settings, the stages and the day for the first time. Where that fails the lists are empty and
  /// StatusLine says so.
  void Open();

  const std::string& Date() const { return date_; }
  /// Empty until they could be read, and for a practice that has none; once read they stay as they are.
  const std::vector<Stage>& Stages() const { return stages_; }
  const Board& Shown() const { return board_; }

  /// Reads the day anew. Where that fails the board stays as it was and StatusLine says so; true when Shown()
  /// changed.
  bool Refresh();

  /// A tick of the timer: looks at the change stamps, and reads the day only when something changed. The tips
  /// follow once a minute. True when Shown() changed.
  bool Tick();

  /// Moves the rows of these keys, from the last to the first, then refreshes; gives what became of each that
  /// was tried. The first that the record store refuses is the last that is tried: waiting for a busy store
  /// may take seconds.
  ///
  /// `shown` is called when the moves are committed and Shown() is up to date, before mails are sent, so that
  /// nobody waits for a mail program to see the move. A receipted charge is told by the prompts; what else
  /// could not be moved, and why, is in StatusLine until the next Move or Refresh. Prompts and mails come
  /// last: a tick may come meanwhile.
  std::vector<Moved> Move(BoardButton button, const std::vector<std::string>& keys,
                          const std::function<void()>& shown);

  /// One quiet line for the window's foot; empty when all is well.
  const std::string& StatusLine() const { return status_; }

 private:
  bool Read();
  bool ReadOf(const std::string& stamp);  // the day, whose stamp was just looked at; empty when that failed
  bool HasStages();
  bool PlaceAgain();
  void ShowStatus(bool isConnected);
  std::optional<std::tm> Now() const;
  MinuteOfDay MinuteOn(const std::optional<std::tm>& now) const;
  MoveOutcome MoveRow(BoardButton button, const DayRow& row, const foundation::SettingsSnapshot& settings,
                      std::vector<MailsToSend>& mails);

  BoardDesk desk_;
  std::string date_;
  bool hours24_ = true;
  std::vector<Stage> stages_;
  bool hasStages_ = false;    // stages_ is what the practice has
  bool isOpened_ = false;
  std::vector<DayRow> rows_;  // as read last
  std::string stamp_;         // of that reading; empty when the next tick must read
  MinuteOfDay placedAt_ = -1;
  Board board_;
  std::string lastGood_;  // "HH:MM" at which the board was known to be right; empty for never
  std::string refused_;   // what the last Move could not do
  std::string status_;
};

/// The button that dropping rows of one list on another one presses; for a drop within the stage list, by the
/// column that was dropped on: the next or previous stage only. Nothing where there is no such button.
///
/// @param fromStage, toStage  stage columns (index) of the row and of the place dropped on; -1 outside the
/// stage list
std::optional<BoardButton> ButtonForDrop(BoardList from, int fromStage, BoardList to, int toStage,
                                         bool hasStages);

/// The button that Alt+Right (`forward`) or Alt+Left presses in a list; nothing where there is none.
std::optional<BoardButton> ButtonForKey(BoardList list, bool forward);

}  // namespace kova::visitflow
