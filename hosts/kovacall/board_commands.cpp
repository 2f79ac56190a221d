#include "hosts/kovacall/board_commands.h"

#include <algorithm>
#include <iterator>

#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "platform/os/application_profile.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/text932/cp932.h"
#include "visitflow/board_session.h"

namespace kova::hosts {
namespace {

using store::GetText;
using visitflow::BoardButton;
using visitflow::BoardRow;
using visitflow::BoardSession;
using visitflow::MailsToSend;
using visitflow::MoveOutcome;
using Arguments = std::vector<std::string>;

std::string Utf8(std::string_view text) { return ShowControls(text932::ToUtf8(text)); }

/// Tells on standard error what a window would show; nobody can be asked.
class Telling final : public foundation::Prompts {
 public:
  bool AskYesNo(std::string_view) override { return false; }
  void Inform(std::string_view text) override { PrintError(Utf8(text) + "\n"); }
};

/// A board of the practice as the window has it.
class PracticeBoard {
 public:
  PracticeBoard(Practice& practice, const std::string& date)
      : db_(practice.Database()),
        profile_(os::RealFiles(), AfxGetApp()->m_pszProfileName),
        session_({&db_, settings_, prompts_, [this](const MailsToSend& mails) { Send(mails); },
                  [] { return std::optional(os::LocalTime()); }},
                 DateArgument(date)) {
    session_.Open();
    if (!session_.StatusLine().empty()) throw UsageError("the day cannot be read");
  }

  BoardSession& Session() { return session_; }
  CKovaDBSys& Database() { return db_; }

 private:
  static std::string DateArgument(const std::string& date) {
    (void)NumberArgument(date, "DATE", 10000101, 99991231);
    return date;
  }
  void Send(const MailsToSend& mails) {
    if (mails.visit) (void)CKovaSubTools::SendVisitMail(&db_, mails.reservation);
    if (mails.finished) (void)CKovaSubTools::SendFinishedMail(&db_, mails.reservation);
  }

  CKovaDBSys& db_;
  os::IniApplicationProfile profile_;
  foundation::SettingsStore settings_{profile_, os::RealFiles()};
  Telling prompts_;
  BoardSession session_;
};

// ---- board

void PrintRows(const char* list, const std::vector<BoardRow>& rows, const BoardSession& session) {
  for (const BoardRow& row : rows) {
    const std::string stage = row.stage < 0 ? "" : session.Stages()[static_cast<std::size_t>(row.stage)].name;
    Print(std::string(list) + '\t' + Utf8(row.key) + '\t' + Utf8(stage) + '\t' + Utf8(row.caption) + '\n');
  }
}

void ShowBoard(const Arguments& arguments, Practice& practice) {
  if (arguments.size() != 1) throw UsageError("takes one date");
  PracticeBoard board(practice, arguments.front());
  const BoardSession& session = board.Session();
  Print("list\tkey\tstage\tcaption\n");
  PrintRows("before", session.Shown().before, session);
  PrintRows("staged", session.Shown().staged, session);
  PrintRows("finished", session.Shown().finished, session);
}

// ---- board-move

BoardButton ButtonArgument(const std::string& text) {
  const auto number = static_cast<int>(NumberArgument(text, "BUTTON", 0, 99999));
  if (!visitflow::IsBoardButton(number))
    throw UsageError("BUTTON: one of 8131, 8132, 8133, 8134, 8127, 8129, not " + text);
  return static_cast<BoardButton>(number);
}

const std::vector<BoardRow>& ListOf(BoardButton button, const BoardSession& session) {
  if (button == BoardButton::kBeforeToNext) return session.Shown().before;
  return button == BoardButton::kFinishedBack ? session.Shown().finished : session.Shown().staged;
}

/// As in the window, a button moves rows of its own list only.
std::vector<std::string> KeyArguments(const Arguments& arguments, BoardButton button,
                                      const BoardSession& session) {
  const std::vector<BoardRow>& list = ListOf(button, session);
  std::vector<std::string> keys;
  for (std::size_t i = 2; i < arguments.size(); ++i) {
    keys.push_back(TextArgument(arguments[i], "KEY"));
    const auto isRow = [&](const BoardRow& row) { return row.key == keys.back(); };
    if (std::none_of(list.begin(), list.end(), isRow))
      throw UsageError("reservation " + ShowControls(arguments[i]) + " is not in the list of button " +
                       arguments[1]);
  }
  return keys;
}

const char* NameOf(MoveOutcome outcome) {
  switch (outcome) {
    case MoveOutcome::kDone:
      return "done";
    case MoveOutcome::kGone:
      return "gone";
    case MoveOutcome::kMovedByOther:
      return "moved-by-other";
    case MoveOutcome::kReceipted:
      return "receipted";
    case MoveOutcome::kFailed:
      break;
  }
  return "failed";
}

void PrintMoved(const visitflow::Moved& moved, CReservationDB& table) {
  std::string line = Utf8(moved.key) + '\t' + NameOf(moved.outcome);
  if (table.GetReservationData(moved.key.c_str()) == 0) {
    const tagRESERVATION& record = table.record;
    for (const std::string_view value :
         {GetText(record.stageCode), GetText(record.stageTime), GetText(record.finishTime)})
      line += '\t' + Utf8(value);
    line += '\t' + std::to_string(record.visited) + '\t' + Utf8(GetText(record.saleNumber));
  }
  Print(line + '\n');
}

void MoveOnBoard(const Arguments& arguments, Practice& practice) {
  if (arguments.size() < 3) throw UsageError("takes a date, a button and at least one reservation");
  const BoardButton button = ButtonArgument(arguments[1]);
  PracticeBoard board(practice, arguments[0]);
  const std::vector<std::string> keys = KeyArguments(arguments, button, board.Session());
  const auto moved = board.Session().Move(button, keys, nullptr);
  CReservationDB table(nullptr, 0);
  if (table.SetAssociatedDB(&board.Database()) != 0) throw UsageError("cannot bind the reservations");
  Print("key\toutcome\tstageCode\tstageTime\tfinishTime\tvisited\tsaleNumber\n");
  for (const visitflow::Moved& each : moved) PrintMoved(each, table);
  const std::string& status = board.Session().StatusLine();
  if (!status.empty()) PrintError(Utf8(status) + "\n");
}

}  // namespace

const std::vector<TableCommand>& BoardCommands() {
  static const std::vector<TableCommand> commands = {
      {"board", "DATE", "the visit flow board of that day: list, key, stage and caption of every row",
       &ShowBoard},
      {"board-move", "DATE BUTTON KEY...",
       "presses one of the board's buttons (8131, 8132, 8133, 8134, 8127, 8129) for those rows of its list; "
       "prints what "
       "became of each, from the last to the first",
       &MoveOnBoard},
  };
  return commands;
}

}  // namespace kova::hosts
