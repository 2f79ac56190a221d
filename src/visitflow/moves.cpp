#include "visitflow/moves.h"

#include <cstdio>

#include "foundation/number_text.h"
#include "platform/recordstore/table.h"
#include "records/reservations.h"
#include "records/transaction.h"
#include "reservations/finished_date.h"
#include "reservations/reservation_to_sale.h"

namespace kova::visitflow {
namespace {

using store::GetText;
using store::PutText;
using store::Result;

using records::kAccounted;
using records::kBeforeVisit;

constexpr int Code(Result result) { return static_cast<int>(result); }

std::string TwoDigits(int code) {
  char text[16];
  std::snprintf(text, sizeof text, "%02d", code);
  return text;
}

/// The stage behind `index` in the order of the visit; accounting behind the last one.
std::string StageOrAccounted(std::size_t index, const std::vector<Stage>& stages) {
  return index < stages.size() ? TwoDigits(stages[index].code) : std::string(kAccounted);
}

std::string_view Normalised(std::string_view stageCode) {
  return stageCode.empty() ? kBeforeVisit : stageCode;
}

std::string ClockText(const std::optional<std::tm>& now) {
  return now ? TwoDigits(now->tm_hour) + TwoDigits(now->tm_min) : "-1-1";
}

int MakeSale(CKovaDBSys* db, const foundation::SettingsSnapshot& settings, tagRESERVATION& reservation) {
  // A patient who was moved back and comes again has paid already.
  if (reservation.hasFee == 0 || !GetText(reservation.saleNumber).empty()) return 0;
  tagFEEREQUEST fee = FeeRequestOf(reservation);
  const int result = reservations::ReservationToSale(settings, db, fee);
  if (result == 0) PutText(reservation.saleNumber, GetText(fee.saleNumber));
  return result;
}

/// Result Receipted when a receipt was given for one of them.
int DeleteCharges(CKovaDBSys* db, const tagRESERVATION& reservation) {
  store::On<CChargeDB> charges(db);
  int result = charges.SetKey(CChargeDB::Key::BySale);
  charges.SetKeyBuffer(reservation.saleNumber, sizeof reservation.saleNumber);
  while (result == 0) {
    result = charges.GetEQ();
    if (result == 0) result = charges.Delete(0);
  }
  return store::FoundOrNone(result);
}

/// The sale, its items and its charges; the number of the sale is gone then.
int DeleteSale(CKovaDBSys* db, tagRESERVATION& reservation) {
  const std::string number(GetText(reservation.saleNumber));
  if (number.empty()) return 0;
  store::On<CSaleDB> sales(db);
  int result = DeleteCharges(db, reservation);
  if (result == 0) {
    result = sales.GetSaleData(number.c_str());
    result = result == 0 ? sales.Delete(1) : store::FoundOrNone(result);
  }
  PutText(reservation.saleNumber, "");
  return result;
}

/// True when the finish time was set.
bool PutStage(tagRESERVATION& reservation, const std::string& stageCode, const std::optional<std::tm>& now) {
  PutText(reservation.stageCode, stageCode);
  PutText(reservation.stageTime, ClockText(now));
  const bool isSet = foundation::ReadInteger(GetText(reservation.finishTime)) != 0;
  if (stageCode != kAccounted || isSet) return false;
  PutText(reservation.finishTime, ClockText(now));
  return true;
}

/// Writes the plan into the current record of the table and into what hangs on it; part of a transaction.
/// True in `finished` when the finish time was set.
int Apply(CKovaDBSys* db, const foundation::SettingsSnapshot& settings, const MovePlan& plan,
          const std::optional<std::tm>& now, CReservationDB& table, bool& finished) {
  tagRESERVATION& reservation = table.record;
  int result = 0;
  if (plan.visit) {
    reservation.visited = *plan.visit ? 1 : 0;
    result = *plan.visit ? MakeSale(db, settings, reservation) : DeleteSale(db, reservation);
  }
  finished = PutStage(reservation, plan.stageCode, now);
  if (result == 0) result = table.Update(UPDATE_IF_UNCHANGED);
  const bool taken = plan.visit && !*plan.visit;
  if (result == 0 && taken) result = reservations::ResetFinishedDate(db, GetText(reservation.patientCode));
  return result;
}

MoveResult Failure(int result) {
  return {result == Code(Result::kReceipted) ? MoveOutcome::kReceipted : MoveOutcome::kFailed, result, {}};
}

}  // namespace

const std::string_view kReceiptedMessage =
    "この予約データの回収料金が領収済みとなっているため、未来院として設定できません。\n"
    "患者の入金情報で領収済みを解除してください。";

bool IsBoardButton(int number) {
  for (const BoardButton button :
       {BoardButton::kBeforeToNext, BoardButton::kStageToBefore, BoardButton::kStageForward,
        BoardButton::kStageBack, BoardButton::kStageToFinished, BoardButton::kFinishedBack}) {
    if (static_cast<int>(button) == number) return true;
  }
  return false;
}

MovePlan PlanMove(BoardButton button, std::string_view stageCode, const std::vector<Stage>& stages) {
  const int at = PlaceOf(stageCode, stages).stage;
  switch (button) {
    case BoardButton::kBeforeToNext:
      return {StageOrAccounted(0, stages), true};
    case BoardButton::kStageToBefore:
      return {std::string(kBeforeVisit), {}};
    case BoardButton::kStageForward:
      return {StageOrAccounted(static_cast<std::size_t>(at + 1), stages), {}};
    case BoardButton::kStageBack:
      if (at <= 0) return {std::string(kBeforeVisit), false};
      return {TwoDigits(stages[static_cast<std::size_t>(at) - 1].code), {}};
    case BoardButton::kStageToFinished:
      return {std::string(kAccounted), {}};
    case BoardButton::kFinishedBack:
      return {stages.empty() ? std::string(kBeforeVisit) : TwoDigits(stages.back().code), {}};
  }
  return {std::string(Normalised(stageCode)), {}};
}

EnabledButtons EnabledBy(bool beforeSelected, bool stagedSelected, bool finishedSelected) {
  return {beforeSelected, stagedSelected, finishedSelected};
}

namespace {

MoveResult MoveOnce(CKovaDBSys* db, const foundation::SettingsSnapshot& settings, std::string_view key,
                           std::string_view shownStage, BoardButton button, const std::vector<Stage>& stages,
                           const std::optional<std::tm>& now) {
  store::On<CReservationDB> table(db);
  records::Transaction transaction(table);
  if (transaction.Begun() != 0) return Failure(transaction.Begun());
  int result = table.GetReservationData(std::string(key).c_str());
  if (result == Code(Result::kNotFound)) return {MoveOutcome::kGone, result, {}};
  if (result != 0) return Failure(result);
  const std::string stored(GetText(table.record.stageCode));
  if (Normalised(stored) != Normalised(shownStage)) return {MoveOutcome::kMovedByOther, 0, {}};

  const MovePlan plan = PlanMove(button, stored, stages);
  bool finished = false;
  result = Apply(db, settings, plan, now, table, finished);
  if (result == 0) result = transaction.End();
  if (result != 0) return Failure(result);
  const bool mails = settings.GetInt("GLOBAL", "WatchOption", 0) == 1;
  return {MoveOutcome::kDone, 0, {mails && plan.visit.value_or(false), mails && finished, table.record}};
}

}  // namespace

MoveResult MoveReservation(CKovaDBSys* db, const foundation::SettingsSnapshot& settings, std::string_view key,
                           std::string_view shownStage, BoardButton button, const std::vector<Stage>& stages,
                           const std::optional<std::tm>& now) {
  MoveResult moved;
  (void)records::WhileInConflict([&] {
    moved = MoveOnce(db, settings, key, shownStage, button, stages, now);
    return moved.result;
  });
  return moved;
}

}  // namespace kova::visitflow
