#include "visitflow/board_session.h"

#include <algorithm>
#include <cstdio>
#include <unordered_map>
#include <utility>

namespace kova::visitflow {
namespace {

using store::GetText;

std::string Formatted(const char* format, int a, int b, int c = 0) {
  char text[48];
  std::snprintf(text, sizeof text, format, a, b, c);
  return text;
}

std::string_view ReasonOf(MoveOutcome outcome) {
  switch (outcome) {
    case MoveOutcome::kGone:
      return "予約が削除されています：";
    case MoveOutcome::kMovedByOther:
      return "他の端末で先に移動されています：";
    case MoveOutcome::kReceipted:
      return "領収済みのため移動できません：";
    case MoveOutcome::kFailed:
      return "保存できませんでした：";
    case MoveOutcome::kDone:
      break;
  }
  return {};
}

/// The rows that could not be moved: the first with its reason, and how many more there are.
class Refusals {
 public:
  void Add(MoveOutcome outcome, std::string_view who) {
    if (outcome == MoveOutcome::kDone) return;
    if (count_++ == 0) first_.append(ReasonOf(outcome)).append(who);
  }
  std::string Text() const {
    return count_ < 2 ? first_ : first_ + "（ほか " + std::to_string(count_ - 1) + " 件）";
  }

 private:
  std::string first_;
  int count_ = 0;
};

}  // namespace

BoardSession::BoardSession(BoardDesk desk, std::string date)
    : desk_(std::move(desk)), date_(std::move(date)) {}

void BoardSession::Open() {
  hours24_ = desk_.settings.Open().GetInt("MENTE", "Show12or24", 1) == 1;
  Read();
  isOpened_ = true;
}

// A board without its stages would let a move pass them by, so it shows nobody until they are read.
bool BoardSession::HasStages() {
  if (hasStages_) return true;
  StagesRead read = ReadStages(desk_.db);
  if (read.result == 0) stages_ = std::move(read.stages);
  return hasStages_ = read.result == 0;
}

std::optional<std::tm> BoardSession::Now() const { return desk_.clock ? desk_.clock() : std::nullopt; }

MinuteOfDay BoardSession::MinuteOn(const std::optional<std::tm>& now) const {
  const bool isShown =
      now && Formatted("%04d%02d%02d", now->tm_year + 1900, now->tm_mon + 1, now->tm_mday) == date_;
  return isShown ? now->tm_hour * 60 + now->tm_min : -1;
}

bool BoardSession::Refresh() {
  refused_.clear();
  return Read();
}

// The stamp is read first: what changes in between is read again at the next tick.
bool BoardSession::Read() {
  const bool wasLost = stamp_.empty() && isOpened_;
  if (wasLost && desk_.reconnect) desk_.reconnect();
  std::string stamp;
  return ReadOf(ReadBoardStamp(desk_.db, stamp) ? stamp : "");
}

bool BoardSession::ReadOf(const std::string& stamp) {
  DayRead day;
  const bool isConnected = !stamp.empty() && HasStages() && (day = ReadDay(desk_.db, date_)).result == 0;
  stamp_ = isConnected ? stamp : "";
  ShowStatus(isConnected);
  if (!isConnected) return false;
  rows_ = std::move(day.rows);
  return PlaceAgain();
}

bool BoardSession::PlaceAgain() {
  placedAt_ = MinuteOn(Now());
  Board placed = PlaceRows(rows_, stages_, hours24_, placedAt_);
  const bool changed = !(placed == board_);
  board_ = std::move(placed);
  return changed;
}

bool BoardSession::Tick() {
  if (stamp_.empty()) return Read();
  std::string stamp;
  const bool isConnected = ReadBoardStamp(desk_.db, stamp);
  if (isConnected && stamp != stamp_) return ReadOf(stamp);
  if (!isConnected) stamp_.clear();
  ShowStatus(isConnected);
  return MinuteOn(Now()) != placedAt_ && PlaceAgain();
}

void BoardSession::ShowStatus(bool isConnected) {
  if (isConnected) {
    const std::optional<std::tm> now = Now();
    if (now) lastGood_ = Formatted("%02d:%02d", now->tm_hour, now->tm_min);
    status_ = refused_;
    return;
  }
  status_ = lastGood_.empty() ? "" : lastGood_ + " の表示です。";
  status_ += "データベースに接続できません。";
}

MoveOutcome BoardSession::MoveRow(BoardButton button, const DayRow& row,
                                  const foundation::SettingsSnapshot& settings,
                                  std::vector<MailsToSend>& mails) {
  const MoveResult moved = MoveReservation(desk_.db, settings, GetText(row.reservation.reservationNumber),
                                           GetText(row.reservation.stageCode), button, stages_, Now());
  if (moved.mails.visit || moved.mails.finished) mails.push_back(moved.mails);
  return moved.outcome;
}

std::vector<Moved> BoardSession::Move(BoardButton button, const std::vector<std::string>& keys,
                                      const std::function<void()>& shown) {
  std::unordered_map<std::string_view, const DayRow*> rows;
  for (const DayRow& row : rows_) rows.emplace(GetText(row.reservation.reservationNumber), &row);
  const foundation::SettingsSnapshot settings = desk_.settings.Open();
  std::vector<Moved> all;
  std::vector<MailsToSend> mails;
  Refusals refusals;
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
    const auto found = rows.find(*key);
    const DayRow* row = found == rows.end() ? nullptr : found->second;
    all.push_back({*key, row == nullptr ? MoveOutcome::kGone : MoveRow(button, *row, settings, mails)});
    refusals.Add(all.back().outcome, row == nullptr ? *key : CaptionOf(*row, hours24_));
    if (all.back().outcome == MoveOutcome::kFailed) break;
  }
  refused_ = refusals.Text();
  Read();
  if (shown) shown();
  if (desk_.sendMails) std::for_each(mails.begin(), mails.end(), desk_.sendMails);
  const auto isReceipted = [](const Moved& moved) { return moved.outcome == MoveOutcome::kReceipted; };
  if (std::any_of(all.begin(), all.end(), isReceipted)) desk_.prompts.Inform(kReceiptedMessage);
  return all;
}

std::optional<BoardButton> ButtonForDrop(BoardList from, int fromStage, BoardList to, int toStage,
                                         bool hasStages) {
  switch (from) {
    case BoardList::kBefore:
      if (to == (hasStages ? BoardList::kStaged : BoardList::kFinished)) return BoardButton::kBeforeToNext;
      break;
    case BoardList::kFinished:
      if (to == (hasStages ? BoardList::kStaged : BoardList::kBefore)) return BoardButton::kFinishedBack;
      break;
    case BoardList::kStaged:
      if (to == BoardList::kBefore) return BoardButton::kStageToBefore;
      if (to == BoardList::kFinished) return BoardButton::kStageToFinished;
      if (fromStage < 0 || toStage < 0) break;
      if (toStage == fromStage + 1) return BoardButton::kStageForward;
      if (toStage == fromStage - 1) return BoardButton::kStageBack;
      break;
  }
  return std::nullopt;
}

std::optional<BoardButton> ButtonForKey(BoardList list, bool forward) {
  switch (list) {
    case BoardList::kBefore:
      return forward ? std::optional(BoardButton::kBeforeToNext) : std::nullopt;
    case BoardList::kStaged:
      return forward ? BoardButton::kStageForward : BoardButton::kStageBack;
    case BoardList::kFinished:
      return forward ? std::nullopt : std::optional(BoardButton::kFinishedBack);
  }
  return std::nullopt;
}

}  // namespace kova::visitflow
