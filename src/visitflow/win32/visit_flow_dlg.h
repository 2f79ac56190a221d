#pragma once

// "来院の流れ": the board of one day, on which the reception moves the patients through it.

#include <optional>
#include <string>
#include <vector>

#include "foundation/settings_store.h"
#include "visitflow/board_session.h"
#include "visitflow/win32/board_list.h"
#include "window/dialog.h"
#include "window/message_prompts.h"

namespace kova::visitflow {

class CVisitFlowDlg final : public window::Dialog {
 public:
  /// The numbers are the system's own; the six moving buttons are those of BoardButton.
  enum Id {
    kClose = IDCANCEL,
    kBeforeList = 8123,
    kFinishedList = 8125,
    kStagedList = 8128,
    kStrip = 8130,
    kDate = 8135,
    kRefresh = 8136,
    kAuto = 8250,
    kBeforeCount = 8300,
    kStagedCount,
    kFinishedCount,
    kStatus,
  };

  /// @param desk  what the session stands on; its prompts are replaced by boxes over this window
  CVisitFlowDlg(const BoardDesk& desk, std::string date);

 private:
  struct Drag {
    BoardList from;
    int stage;  // of the row that was taken, in the stage list
  };
  void AddControls() override;
  window::Box Arrange() const override;
  window::Size SmallestFrame() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  LRESULT OnNotify(const NMHDR& header) override;
  void OnTimer(UINT_PTR timer) override;
  bool OnKey(HWND focus, WPARAM key, bool alt) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  void OnOk() override {}  // Enter moves nobody
  void OnCancel() override;

  window::Box ListBox(int count, int list, int columns) const;
  void UseStoredSize();
  void AddColumns();
  void AddStages();
  void UseStages();
  void ShowStageControls();
  RECT Frame() const;
  void Show();
  void ShowEnabled();
  void Move(BoardButton button, BoardList from);
  void OnAuto();
  void BeginDrag(const NMLISTVIEW& notice);
  void Drop(POINT at);
  std::optional<BoardButton> DropButton(POINT at) const;
  BoardListView& View(BoardList list);
  std::optional<BoardList> ListOf(HWND window) const;

  BoardDesk desk_;
  window::DialogPrompts prompts_{*this};
  BoardSession session_;
  BoardListView before_;
  BoardListView staged_;
  BoardListView finished_;
  std::vector<Stage> stages_;  // that the window is arranged for
  window::Size first_;  // the outer size at creation: the smallest, and the default of the stored one
  std::optional<Drag> drag_;
};

}  // namespace kova::visitflow
