// Long work behind its window.

#include <windows.h>
#include <commctrl.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "foundation/progress.h"
#include "hosts/person/window_driver.h"
#include "tests/windows/window_practice.h"
#include "window/work_dialog.h"

namespace {

using namespace kova::person;
using kova::foundation::Progress;
using kova::testing::Work;
using kova::window::WorkDialog;

TEST(WorkWindow, ShowsHowFarItIsAndStops) {
  bool isWhole = true;
  int place = 0;
  Work(
      [&] {
        WorkDialog dialog("患者分布図", WorkDialog::Kind::kStoppable);
        isWhole = dialog.Run(nullptr, [](Progress& progress) {
          progress.Begin("〒番号データマッチング中", 0.5, 0.8);
          while (progress.Report(0.5)) Sleep(1);
        });
      },
      [&] {
        HWND shown = Dialog("患者分布図");
        WaitFor("the phase",
                [&] { return Shown(Item(shown, WorkDialog::kPhase)) == "〒番号データマッチング中"; });
        EXPECT_EQ(Faults(shown), "");
        place = static_cast<int>(SendMessageW(Item(shown, WorkDialog::kBar), PBM_GETPOS, 0, 0));
        Photograph(shown, "progress");
        const ULONGLONG pressed = GetTickCount64();
        PressKey(FocusOf(shown), VK_ESCAPE);
        WaitUntilClosed(shown);
        RecordProperty("milliseconds_to_stop", static_cast<int>(GetTickCount64() - pressed));
      });
  EXPECT_FALSE(isWhole);
  EXPECT_EQ(place, 650);
}

TEST(WorkWindow, HandsOnWhatTheWorkThrows) {
  const auto failing = [](Progress&) { throw std::runtime_error("the work failed"); };
  WorkDialog quick("x", WorkDialog::Kind::kStoppable);
  EXPECT_THROW(quick.Run(nullptr, failing), std::runtime_error);
  Work(
      [&] {
        WorkDialog slow("作業中", WorkDialog::Kind::kWaiting);
        EXPECT_THROW(slow.Run(nullptr,
                              [&](Progress& progress) {
                                Sleep(600);
                                failing(progress);
                              }),
                     std::runtime_error);
      },
      [] { WaitUntilClosed(Dialog("作業中")); });
}

}  // namespace
