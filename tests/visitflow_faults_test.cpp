// A move on the board while the disk fails: it is made whole or not at all.

#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "foundation/settings.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/sqlite/sqlite_engine.h"
#include "platform/recordstore/kovadbcall.h"
#include "tests/recordstore/failing_vfs.h"
#include "visitflow/moves.h"
#include "visitflow/testing/small_practice.h"

namespace kova::testing {
namespace {

using visitflow::BoardButton;
using visitflow::MoveOutcome;
using visitflow::MoveReservation;
using visitflow::testing::StateOf;

// With write-ahead logging, and with the journal of a network drive, which writes at every step of a
// transaction.
class MoveInBothModes : public ::testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Modes, MoveInBothModes, ::testing::Bool(),
                         [](const auto& mode) { return mode.param ? "network" : "local"; });

TEST_P(MoveInBothModes, AFailingDiskLeavesEverythingAsItWas) {
  const os::testing::TemporaryFolder folder("visitflow_faults");
  ASSERT_EQ(store::CreateSqliteDatabase(folder.Path(), GetParam()), store::Result::kDone);
  CKovaDBSys db;
  ASSERT_EQ(db.OpenDB(folder.Path().c_str()), 0);
  ASSERT_EQ(visitflow::testing::FillPractice(db), 0);
  const foundation::SettingsSnapshot settings("[GLOBAL]\r\nWatchOption=1\r\n");
  const std::vector<visitflow::Stage> stages = {{10, "A"}};
  const struct {
    BoardButton button;
    const char* stage;
    const char* moved;
  } moves[] = {{BoardButton::kBeforeToNext, "", "10 0000 - v s1 1/1/0 20261101"},
               {BoardButton::kStageBack, "10", "00 0000 - s 0/0/0 20261005"}};
  for (const auto& move : moves) {
    const std::string before = StateOf(db, "1");
    bool worked = false;
    for (int step = 1; !worked && step < 300; ++step) {
      FailFromStep(step, SQLITE_FULL);
      const auto result = MoveReservation(&db, settings, "1", move.stage, move.button, stages, std::tm{});
      worked = StepsTaken() < step;
      FailFromStep(0, 0);
      EXPECT_EQ(result.outcome, worked ? MoveOutcome::kDone : MoveOutcome::kFailed) << "step " << step;
      EXPECT_EQ(StateOf(db, "1"), worked ? move.moved : before) << "step " << step;
      EXPECT_EQ(result.mails.visit, worked && move.button == BoardButton::kBeforeToNext) << "step " << step;
    }
    EXPECT_TRUE(worked) << "no step count was enough";
  }
  std::string finding;
  EXPECT_EQ(db.CheckIntegrity(finding), 0) << finding;
}

}  // namespace
}  // namespace kova::testing

int main(int argc, char** argv) {
  kova::testing::InstallFailingVfs();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
