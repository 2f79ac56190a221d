// Moves and a board at work, on a real database.

#include "visitflow/moves.h"

#include <gtest/gtest.h>

#include <tuple>

#include "platform/os/testing/fake_files.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/testing/failing_reads.h"
#include "visitflow/board_session.h"
#include "visitflow/testing/board_text.h"
#include "visitflow/testing/small_practice.h"

namespace kova::visitflow {
namespace {

using store::GetText;
using store::PutText;
using store::On;
using testing::BoardText;
using testing::kDay;
using testing::StateOf;

class VisitFlow : public ::testing::Test, protected foundation::Prompts {
 protected:
  void SetUp() override {
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str()), 0);
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
    ASSERT_EQ(testing::FillPractice(db_), 0);
    SetClock(9, 5);
    profile_.values["GLOBAL/DATABASE"] = "D:\\";
    files_.contents["D:\\GLOBALSETTING.ini"] = "[GLOBAL]\r\nWatchOption=1\r\n";
  }

  bool AskYesNo(std::string_view) override { return false; }
  void Inform(std::string_view text) override { said_ += text; }

  void SetClock(int hour, int minute) {
    now_ = std::tm{};
    std::tie(now_->tm_year, now_->tm_mon, now_->tm_mday) = std::tuple(126, 10, 22);
    std::tie(now_->tm_hour, now_->tm_min) = std::tuple(hour, minute);
  }

  BoardSession MakeSession() {
    return BoardSession({&db_, settings_, *this,
                         [this](const MailsToSend& mails) {
                           mails_ += std::string(GetText(mails.reservation.reservationNumber)) +
                                     (mails.visit ? "v" : "") + (mails.finished ? "f" : "") + " ";
                         },
                         [this] { return now_; },
                         [this] {
                           if (isBack_) (void)db_.OpenDB(folder_.Path().c_str());
                         }},
                        kDay);
  }

  std::string Shown(const BoardSession& session) { return BoardText(session.Shown(), session.Stages()); }

  void PutCharge(const char* sale, int receipted) {
    On<CChargeDB> table(db_);
    PutText(table.record.chargeNumber, "1");
    PutText(table.record.saleNumber, sale);
    table.record.receipted = static_cast<std::uint8_t>(receipted);
    ASSERT_EQ(table.Insert(), 0);
  }

  void PutStage(CKovaDBSys& db, const char* key, const char* stageCode) {
    On<CReservationDB> table(db);
    ASSERT_EQ(table.GetReservationData(key), 0);
    PutText(table.record.stageCode, stageCode);
    ASSERT_EQ(table.Update(UPDATE_ALWAYS), 0);
  }

  os::testing::TemporaryFolder folder_{"visitflow"};
  os::testing::FakeFiles files_;
  os::testing::FakeProfile profile_;
  foundation::SettingsStore settings_{profile_, files_};
  CKovaDBSys db_;
  std::optional<std::tm> now_;
  std::string mails_;
  std::string said_;
  bool isBack_ = false;  // the database, after it was lost
};

TEST_F(VisitFlow, ADayThroughTheButtons) {
  BoardSession session = MakeSession();
  session.Open();
  EXPECT_EQ(Shown(session), "before: 1 2 | A: | B: 3 | done:");
  EXPECT_EQ(session.Shown().before[0].caption, "1    山田");
  EXPECT_EQ(session.Shown().staged[0].caption, "2    山田") << "the other name";
  // Time, button and rows; the board, mails and one reservation's state afterwards.
  const struct {
    const char *press, *board, *mails, *key, *state;
  } steps[] = {
      {"0905 8131 1 2", "before: | A: 1 2 | B: 3 | done:", "2v 1v ", "1", "10 0905 - v s1 1/1/0 20261101"},
      {"0910 8132 1", "before: 1 | A: 2 | B: 3 | done:", "", "1", "00 0910 - v s1 1/1/0 20261101"},
      {"0915 8131 1", "before: | A: 1 2 | B: 3 | done:", "1v ", "1", "10 0915 - v s1 1/1/0 20261101"},
      {"0920 8133 1 3", "before: | A: 2 | B: 1 | done: 3", "3f ", "3", "01 0920 0920 v s 1/1/0 20261101"},
      {"0925 8129 3", "before: | A: 2 | B: 1 3 | done:", "", "3", "20 0925 0920 v s 1/1/0 20261101"},
      {"0930 8127 3", "before: | A: 2 | B: 1 | done: 3", "", "3", "01 0930 0920 v s 1/1/0 20261101"},
      {"0935 8134 1 2", "before: 2 | A: 1 | B: | done: 3", "", "2", "00 0935 - s 1/1/0 20261005"},
      {"0940 8134 1", "before: 1 2 | A: | B: | done: 3", "", "1", "00 0940 - s 0/0/0 20261005"},
      {"---- 8131 1", "before: 2 | A: 1 | B: | done: 3", "1v ", "1", "10 -1-1 - v s2 1/1/0 20261005"},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(step.press);
    std::vector<std::string> keys = testing::Words(step.press);
    const std::string time = keys[0];
    const auto button = static_cast<BoardButton>(std::stoi(keys[1]));
    keys.erase(keys.begin(), keys.begin() + 2);
    time == "----" ? now_.reset() : SetClock(std::stoi(time.substr(0, 2)), std::stoi(time.substr(2)));
    mails_.clear();
    std::string atShown;
    session.Move(button, keys, [&] { atShown = Shown(session) + mails_; });
    EXPECT_EQ(atShown, step.board) << "shown before mails are sent";
    EXPECT_EQ(StateOf(db_, step.key), step.state);
    EXPECT_EQ(mails_, step.mails);
  }
  files_.contents.clear();  // and with that "WatchOption"
  mails_.clear();
  session.Move(BoardButton::kBeforeToNext, {"2"}, nullptr);
  EXPECT_EQ(mails_, "");
}

TEST_F(VisitFlow, AReceiptedChargeKeepsTheReservationAsItIs) {
  BoardSession session = MakeSession();
  session.Open();
  session.Move(BoardButton::kBeforeToNext, {"1"}, nullptr);
  PutCharge("000000000001", 1);
  const std::string before = StateOf(db_, "1");
  SetClock(10, 0);
  const std::vector<Moved> moved = session.Move(BoardButton::kStageBack, {"1"}, nullptr);
  ASSERT_EQ(moved.size(), 1U);
  EXPECT_EQ(moved[0].outcome, MoveOutcome::kReceipted);
  EXPECT_EQ(StateOf(db_, "1"), before);
  EXPECT_EQ(said_,
            "この予約データの回収料金が領収済みとなっているため、未来院として設定できません。\n"
            "患者の入金情報で領収済みを解除してください。");
  EXPECT_EQ(session.StatusLine(), "領収済みのため移動できません：1    山田              9:05");

  On<CChargeDB> charge(db_);
  ASSERT_EQ(charge.GetFIRST(), 0);
  charge.record.receipted = 0;
  ASSERT_EQ(charge.Update(), 0);
  session.Move(BoardButton::kStageBack, {"1"}, nullptr);
  EXPECT_EQ(StateOf(db_, "1"), "00 1000 - s 0/0/0 20261005");
}

TEST_F(VisitFlow, WhatAnotherWorkstationDidFirstIsLeftAlone) {
  BoardSession session = MakeSession();
  session.Open();
  CKovaDBSys second;
  ASSERT_EQ(second.OpenDB(folder_.Path().c_str()), 0);
  PutStage(second, "1", "20");
  PutStage(second, "2", "00");  // the same as none
  On<CReservationDB> table(second);
  ASSERT_EQ(table.GetReservationData("3"), 0);
  ASSERT_EQ(table.Delete(), 0);
  const std::vector<Moved> moved = session.Move(BoardButton::kBeforeToNext, {"1", "2", "3", "77"}, nullptr);
  std::string outcomes;
  for (const Moved& each : moved) outcomes += each.key + std::to_string(static_cast<int>(each.outcome)) + " ";
  EXPECT_EQ(outcomes, "771 31 20 12 ");
  EXPECT_EQ(StateOf(db_, "1"), "20 - - s 0/0/0 20261101");
  EXPECT_EQ(Shown(session), "before: | A: 2 | B: 1 | done:");
  EXPECT_EQ(session.StatusLine(), "予約が削除されています：77（ほか 2 件）");
  session.Tick();
  EXPECT_NE(session.StatusLine(), "") << "stays until the user does something";
  session.Refresh();
  EXPECT_EQ(session.StatusLine(), "");
}

TEST_F(VisitFlow, TicksReadOnlyWhatChanged) {
  BoardSession session = MakeSession();
  session.Open();
  EXPECT_FALSE(session.Tick());
  CKovaDBSys second;
  ASSERT_EQ(second.OpenDB(folder_.Path().c_str()), 0);
  PutStage(second, "1", "10");
  EXPECT_TRUE(session.Tick());
  EXPECT_EQ(Shown(session), "before: 2 | A: 1 | B: 3 | done:");
  EXPECT_FALSE(session.Tick());
  session.Move(BoardButton::kStageForward, {"1"}, nullptr);
  SetClock(9, 6);
  EXPECT_TRUE(session.Tick()) << "the tips";
  EXPECT_EQ(session.Shown().staged[0].tip, "予約 09:00\n移動 09:05\nこの段階 1 分");
  EXPECT_FALSE(session.Tick());
}

// A practice whose stages cannot be read is not one without stages.
TEST_F(VisitFlow, ShowsNobodyUntilTheStagesAreRead) {
  store::testing::FailReads(db_, "category");
  BoardSession session = MakeSession();
  session.Open();
  EXPECT_EQ(Shown(session), "before: | done:");
  EXPECT_EQ(session.StatusLine(), "データベースに接続できません。");
  isBack_ = true;
  EXPECT_TRUE(session.Tick());
  EXPECT_EQ(Shown(session), "before: 1 2 | A: | B: 3 | done:");
  EXPECT_EQ(session.StatusLine(), "");
}

TEST_F(VisitFlow, AVanishedDatabaseKeepsTheBoardAndComesBack) {
  BoardSession never({nullptr, settings_, *this, {}, {}}, kDay);
  never.Open();
  EXPECT_EQ(Shown(never), "before: | done:");
  EXPECT_EQ(never.StatusLine(), "データベースに接続できません。");
  EXPECT_FALSE(never.Tick());

  BoardSession session = MakeSession();
  session.Open();
  const std::string board = Shown(session);
  db_.CloseDB();
  SetClock(9, 6);
  EXPECT_FALSE(session.Refresh());
  session.Tick();
  EXPECT_EQ(Shown(session), board);
  EXPECT_EQ(session.StatusLine(), "09:05 の表示です。データベースに接続できません。");
  session.Move(BoardButton::kBeforeToNext, {"1", "2"}, nullptr);
  EXPECT_EQ(Shown(session), board);
  isBack_ = true;
  session.Tick();
  EXPECT_EQ(Shown(session), board);
  EXPECT_EQ(session.StatusLine(), "保存できませんでした：1    山田");
}

}  // namespace
}  // namespace kova::visitflow
