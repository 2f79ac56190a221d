// The visit flow board in a real window, worked as the reception works it.

#include <afxwin.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "entry/kova_com_dlg.h"
#include "entry/kova_sub_tools.h"
#include "hosts/person/window_driver.h"
#include "hosts/reception/resource.h"
#include "platform/os/clock.h"
#include "platform/recordstore/table.h"
#include "tests/recordstore/store_server.h"
#include "tests/run_program.h"
#include "tests/windows/window_practice.h"
#include "visitflow/win32/visit_flow_dlg.h"

namespace {

using namespace kova::person;
using kova::store::GetText;
using kova::store::PutText;
using kova::store::On;
using kova::testing::Environment;
using kova::testing::WindowPractice;
using kova::testing::Work;
using kova::visitflow::BoardButton;
using Board = kova::visitflow::CVisitFlowDlg;
using T = CKovaSubTools;

constexpr const char* kTitle = "来院の流れ";
constexpr const char* kDay = "20241124";

int Button(BoardButton button) { return static_cast<int>(button); }

class VisitFlowWindow : public testing::Test {
 protected:
  void AddStage(const char* code, const char* name, const char* marker = "") {
    tagCATEGORY stage{};
    PutText(stage.classCode, "5");
    PutText(stage.code, code);
    PutText(stage.name, name);
    PutText(stage.sortOrder, code);
    PutText(stage.marker, marker);
    Insert<CCategoryDB>(stage);
  }
  /// A patient and a reservation of the day, both numbered `number`.
  void AddVisit(int number, const char* name, const char* stage, const char* stageTime) {
    const std::string code = std::to_string(100 + number);
    tagPATIENTDB patient{};
    PutText(patient.patientCode, code);
    PutText(patient.caseNumber, code);
    PutText(patient.name, name);
    Insert<CPatientDB>(patient);
    tagRESERVATION reservation{};
    PutText(reservation.reservationNumber, Key(number));
    PutText(reservation.patientCode, code);
    PutText(reservation.reservationDate, day_);
    PutText(reservation.startTime, "0900");
    PutText(reservation.stageCode, stage);
    PutText(reservation.stageTime, stageTime);
    Insert<CReservationDB>(reservation);
  }
  void AddDay() {
    AddStage("10", "受付済");
    AddStage("20", "診療中");
    AddStage("90", "旧：検査", "__");
    for (int i = 1; i <= 4; ++i) AddVisit(i, "山田　表太郎", "", "");
    AddVisit(5, "能登　予以子", "10", "0930");
    AddVisit(6, "長い名前の患者・ソフィア・マリア・フォン・ヴァイス", "20", "1415");
    AddVisit(7, "佐藤　十", "01", "1001");
  }
  static std::string Key(int number) { return "00000000000" + std::to_string(number); }

  template <typename Table, typename Record>
  void Insert(const Record& record) {
    On<Table> table(practice_.Database());
    table.record = record;
    ASSERT_EQ(table.Insert(), 0);
  }
  tagRESERVATION Read(int number) {
    On<CReservationDB> table(practice_.Database());
    EXPECT_EQ(table.GetReservationData(Key(number).c_str()), 0);
    return table.record;
  }
  /// Another workstation's move.
  void MoveElsewhere(int number, const char* stage) {
    On<CReservationDB> table(practice_.Database());
    ASSERT_EQ(table.GetReservationData(Key(number).c_str()), 0);
    PutText(table.record.stageCode, stage);
    ASSERT_EQ(table.Update(UPDATE_ALWAYS), 0);
  }
  static void Select(HWND board, int list, std::vector<int> rows) {
    HWND window = Item(board, list);
    SendMessageW(board, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(window), TRUE);
    ListView_SetItemState(window, -1, 0, LVIS_SELECTED);
    for (const int row : rows)
      ListView_SetItemState(window, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  }
  static void WaitForRows(HWND board, int before, int staged, int finished) {
    WaitFor("the rows", [&] {
      return ListView_GetItemCount(Item(board, Board::kBeforeList)) == before &&
             ListView_GetItemCount(Item(board, Board::kStagedList)) == staged &&
             ListView_GetItemCount(Item(board, Board::kFinishedList)) == finished;
    });
  }

  /// Works two boards of AddDay like two workstations, by keys alone: they may be of other processes.
  static void ExpectEachShowsTheOthersMoves(const std::vector<HWND>& boards) {
    const auto moveLast = [](HWND board, int list, WPARAM arrow) {
      HWND window = Item(board, list);
      SendMessageW(board, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(window), TRUE);
      PressKey(window, VK_END);
      PressKey(window, arrow, true);
    };
    for (HWND board : boards) {
      WaitForRows(board, 4, 2, 1);
      Press(board, Board::kAuto);
    }
    moveLast(boards[0], Board::kBeforeList, VK_RIGHT);
    for (HWND board : boards) WaitForRows(board, 3, 3, 1);
    moveLast(boards[1], Board::kFinishedList, VK_LEFT);
    for (HWND board : boards) WaitForRows(board, 3, 4, 0);
    for (HWND board : boards) Press(board, IDCANCEL);
    for (HWND board : boards) WaitUntilClosed(board);
  }
  void ExpectBothMoved() {
    EXPECT_EQ(GetText(Read(4).stageCode), "10");
    EXPECT_EQ(GetText(Read(7).stageCode), "20");
    EXPECT_EQ(GetText(Read(1).stageCode), "");
  }

  std::string day_ = kDay;
  WindowPractice practice_{"board"};
};

TEST_F(VisitFlowWindow, MovesPatientsThroughTheDay) {
  AddDay();
  Work([] { EXPECT_EQ(CKovaComDlg::OpenVisitFlowDialog(2024, 11, 24), 2); },
       [&] {
         HWND board = Dialog(kTitle);
         EXPECT_EQ(Shown(Item(board, Board::kDate)), "2024/11/24");
         WaitForRows(board, 4, 2, 1);
         EXPECT_EQ(ListCell(Item(board, Board::kStagedList), 0, 0), "105  能登　予以子      9:30");
         EXPECT_EQ(ListCell(Item(board, Board::kStagedList), 1, 0), "");
         EXPECT_EQ(Faults(board), "");
         EXPECT_FALSE(IsWindowEnabled(Item(board, Button(BoardButton::kBeforeToNext))));
         Select(board, Board::kBeforeList, {0, 2});
         Photograph(board, "board");
         Press(board, Button(BoardButton::kBeforeToNext));
         WaitForRows(board, 2, 4, 1);
         // By keys: the selection went along with its rows' list, so another one is made.
         Select(board, Board::kStagedList, {0});
         PressKey(Item(board, Board::kStagedList), VK_RIGHT, true);
         WaitFor("the next stage", [&] { return !ListCell(Item(board, Board::kStagedList), 0, 1).empty(); });
         EXPECT_EQ(ListView_GetItemState(Item(board, Board::kStagedList), 0, LVIS_SELECTED),
                   UINT{LVIS_SELECTED});
         Press(board, Button(BoardButton::kStageToFinished));
         WaitForRows(board, 2, 3, 2);
         Select(board, Board::kFinishedList, {0});
         PressKey(Item(board, Board::kFinishedList), VK_LEFT, true);
         WaitForRows(board, 2, 4, 1);
         Press(board, IDCANCEL);
         WaitUntilClosed(board);
       });
  EXPECT_EQ(GetText(Read(3).stageCode), "10");
  EXPECT_EQ(Read(3).visited, 1);
  EXPECT_EQ(GetText(Read(3).stageTime).size(), 4U);
  EXPECT_EQ(GetText(Read(1).stageCode), "20");  // forward, finished, back to the last stage
}

TEST_F(VisitFlowWindow, SeesOtherWorkstationsAndWritesNothingBlindly) {
  AddDay();
  Work([] { CKovaComDlg::OpenVisitFlowDialog(kDay); },
       [&] {
         HWND board = Dialog(kTitle);
         Select(board, Board::kBeforeList, {1, 3});
         MoveElsewhere(1, "20");
         MoveElsewhere(4, "10");
         Press(board,
               Button(BoardButton::kBeforeToNext));  // rows 2 and 4: the second was moved by the other one
         WaitForRows(board, 1, 5, 1);
         EXPECT_NE(Shown(Item(board, Board::kStatus)).find("他の端末で先に移動されています"),
                   std::string::npos);
         // An automatic refresh keeps what is selected, and tells of another program's move.
         Select(board, Board::kBeforeList, {0});
         Press(board, Board::kAuto);
         const std::string finish = std::to_string(Button(BoardButton::kStageToFinished));
         const auto run =
             kova::testing::RunProgram(kova::testing::BuiltProgram("kovacall"),
                                       {"--app", practice_.Profile(), "board-move", kDay, finish, Key(2)});
         EXPECT_EQ(run.code, 0) << run.err;
         WaitForRows(board, 1, 4, 2);
         EXPECT_EQ(ListView_GetSelectedCount(Item(board, Board::kBeforeList)), 1U);
         Press(board, IDCANCEL);
         WaitUntilClosed(board);
       });
  EXPECT_EQ(GetText(Read(4).stageCode), "10");
  EXPECT_EQ(Read(4).visited, 0);
  EXPECT_EQ(T::GetGlobalSettingInt("KOVACOM", "VisitFlowAutoUpdate", 0), 1);
  EXPECT_GT(T::GetGlobalSettingInt("KOVACOM", "VisitFlowWindowWidth", 0), 0);
}

TEST_F(VisitFlowWindow, ShowsTheDayWhileTheServerIsGoneAndGoesOn) {
  if (Environment("KOVA_SERVER_KIND") != "PostgreSQL") GTEST_SKIP() << "no server whose end is the end of all of them";
  const auto server = [](const char* command) {  // does not wait for it
    (void)std::system(("start /unix /bin/bash " KOVA_SCRIPTS "/postgres.sh " + std::string(command) + " >nul 2>nul").c_str());
  };
  AddDay();
  Work([] { CKovaComDlg::OpenVisitFlowDialog(kDay); },
       [&] {
         HWND board = Dialog(kTitle);
         const auto says = [&](const char* words) {
           return Shown(Item(board, Board::kStatus)).find(words) != std::string::npos;
         };
         WaitForRows(board, 4, 2, 1);
         Press(board, Board::kAuto);
         server("freeze");
         WaitFor("the quiet line", [&] { return says("の表示です。データベースに接続できません。"); });
         Select(board, Board::kBeforeList, {0});
         Press(board, Button(BoardButton::kBeforeToNext));  // nothing comes of it
         WaitForRows(board, 4, 2, 1);
         Photograph(board, "board_server_gone");
         EXPECT_EQ(Faults(board), "");
         server("thaw");
         WaitFor("the server", [&] { return practice_.Open() == 0; });
         MoveElsewhere(2, "20");
         WaitForRows(board, 3, 3, 1);
         WaitFor("what became of the move", [&] { return says("保存できませんでした：101"); });
         Press(board, IDCANCEL);
         WaitUntilClosed(board);
       });
  EXPECT_EQ(GetText(Read(1).stageCode), "");
}

TEST_F(VisitFlowWindow, RowsAreDraggedWhereTheyBelong) {
  AddDay();
  Work([] { CKovaComDlg::OpenVisitFlowDialog(kDay); },
       [&] {
         HWND board = Dialog(kTitle);
         WaitForRows(board, 4, 2, 1);
         HWND before = Item(board, Board::kBeforeList), staged = Item(board, Board::kStagedList),
              finished = Item(board, Board::kFinishedList);
         DragAndDrop(board, CellOnScreen(before, 2, 0), CellOnScreen(finished, 3, 0));  // not from there
         DragAndDrop(board, CellOnScreen(before, 1, 0), CellOnScreen(staged, 4, 0));
         WaitForRows(board, 3, 3, 1);
         EXPECT_EQ(ListCell(staged, 0, 0).substr(0, 3), "102");
         DragAndDrop(board, CellOnScreen(staged, 0, 0), CellOnScreen(staged, 1, 1));  // the next stage
         WaitFor("the next stage", [&] { return ListCell(staged, 0, 1).substr(0, 3) == "102"; });
         DragAndDrop(board, CellOnScreen(staged, 0, 1), CellOnScreen(finished, 0, 0));
         WaitForRows(board, 3, 2, 2);
         Press(board, IDCANCEL);
         WaitUntilClosed(board);
       });
  EXPECT_EQ(GetText(Read(2).stageCode), "01");
}

TEST_F(VisitFlowWindow, TwoOfOneProcessWorkSideBySide) {
  AddDay();
  Work([] { CKovaComDlg::OpenVisitFlowDialog(kDay); },
       [&] {
         (void)Dialog(kTitle);
         const auto open = [](void*) -> DWORD { return DWORD(CKovaComDlg::OpenVisitFlowDialog(kDay)); };
         HANDLE second = CreateThread(nullptr, 0, open, nullptr, 0, nullptr);
         ExpectEachShowsTheOthersMoves(Dialogs(kTitle, 2));
         WaitForSingleObject(second, INFINITE);
         CloseHandle(second);
       });
  ExpectBothMoved();
}

TEST_F(VisitFlowWindow, TwoHostsOnOnePractice) {
  const std::tm now = kova::os::LocalTime();
  char today[40];
  std::snprintf(today, sizeof today, "%04d%02d%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
  day_ = today;  // which a host shows first
  AddDay();
  const auto folder = std::filesystem::current_path();
  std::filesystem::current_path(practice_.Native());
  const auto program = kova::testing::BuiltProgram("reception");
  kova::testing::ChildProcess one(program, {"--app", "app.ini"}), other(program, {"--app", "app.ini"});
  Work([] {},
       [&] {
         const std::vector<HWND> hosts = Dialogs("受付", 2);
         for (HWND host : hosts) PostMessageW(host, WM_COMMAND, IDC_BOARD, 0);
         ExpectEachShowsTheOthersMoves(Dialogs(kTitle, 2));
         for (HWND host : hosts) PostMessageW(host, WM_CLOSE, 0, 0);
         EXPECT_EQ(one.Wait(), 0);
         EXPECT_EQ(other.Wait(), 0);
       });
  std::filesystem::current_path(folder);
  ExpectBothMoved();
}

TEST_F(VisitFlowWindow, TheFirstOfTheDayMakesTheBackupAndOneThatFailedIsTold) {
  if (!Environment("KOVA_SERVER_KIND").empty()) return;  // a server has its own backups
  const auto backups = practice_.Native() / "backups";
  std::filesystem::create_directories(backups);
  T::SetGlobalSettingString("GLOBAL", "BackupFolder", (practice_.Folder() + "backups").c_str());
  const auto open = [&](const std::function<void()>& person) {
    Work([] { CKovaComDlg::OpenVisitFlowDialog(kDay); }, [&] {
      person();
      HWND board = Dialog(kTitle);
      Press(board, IDCANCEL);
      WaitUntilClosed(board);
    });
  };
  const auto made = [&] {
    for (const auto& each : std::filesystem::directory_iterator(backups))
      if (std::filesystem::exists(each.path() / "kova.db") && each.path().extension().empty()) return true;
    return false;
  };
  open([&] { WaitFor("the backup", made); });
  std::string line;
  WaitFor("the report", [&] {
    return kova::os::RealFiles().Read(practice_.Folder() + "kova.backup", 1000, line) == kova::os::FileOutcome::kOk;
  });
  const std::size_t result = line.find(' ', 9) + 1;
  line[result] = '9';  // as if it had failed
  ASSERT_EQ(kova::os::RealFiles().Replace(practice_.Folder() + "kova.backup", line), kova::os::FileOutcome::kOk);
  open([&] {
    HWND told = MessageBoxWindow("データベースの自動バックアップができませんでした（結果番号 9）。");
    Photograph(told, "backup_failed");
    PressKey(told, VK_RETURN);
  });
  open([] {});  // once a day
}

TEST_F(VisitFlowWindow, OpensOnADatabaseThatCannotBeOpenedYet) {
  AddDay();
  const auto file = practice_.Native() / (Environment("KOVA_SERVER_KIND").empty() ? "INDEXCONTROL.BTR" : "kova.server");
  auto away = file;
  away += ".away";
  std::filesystem::rename(file, away);
  Work([] { CKovaComDlg::OpenVisitFlowDialog(kDay); },
       [&] {
         HWND board = Dialog(kTitle);
         EXPECT_EQ(Shown(Item(board, Board::kStatus)), "データベースに接続できません。");
         EXPECT_FALSE(IsWindowVisible(Item(board, Board::kStagedList)));
         std::filesystem::rename(away, file);
         Press(board, Board::kRefresh);
         WaitForRows(board, 4, 2, 1);
         EXPECT_TRUE(IsWindowVisible(Item(board, Board::kStagedList)));
         EXPECT_EQ(Shown(Item(board, Board::kStatus)), "");
         EXPECT_EQ(Faults(board), "");
         Photograph(board, "board_late_stages");
         Press(board, IDCANCEL);
         WaitUntilClosed(board);
       });
}

TEST_F(VisitFlowWindow, HasTwoListsWithoutStagesAndRefusesHalfADate) {
  AddVisit(1, "山田　表太郎", "07", "930");
  EXPECT_EQ(CKovaComDlg::OpenVisitFlowDialog("2024112"), -1);
  Work([] { CKovaComDlg::OpenVisitFlowDialog(kDay); },
       [&] {
         HWND board = Dialog(kTitle);
         WaitForRows(board, 1, 0, 0);
         EXPECT_FALSE(IsWindowVisible(Item(board, Board::kStagedList)));
         EXPECT_EQ(ListCell(Item(board, Board::kBeforeList), 0, 0), "101  山田　表太郎");
         EXPECT_EQ(Faults(board), "");
         Photograph(board, "board_two_lists");
         Select(board, Board::kBeforeList, {0});
         Press(board, Button(BoardButton::kBeforeToNext));
         WaitForRows(board, 0, 0, 1);
         Press(board, IDCANCEL);
         WaitUntilClosed(board);
       });
  EXPECT_EQ(GetText(Read(1).stageCode), "01");
  EXPECT_EQ(GetText(Read(1).finishTime).size(), 4U);
}

}  // namespace
