#pragma once

// "該当患者リスト": finds a patient by the beginning of the ID, the reading or the name.

#include <optional>
#include <string>
#include <vector>

#include "pickers/patient_query.h"
#include "window/dialog.h"
#include "window/virtual_list.h"

namespace kova::pickers {

class CQueryPatientDlg final : public window::Dialog {
 public:
  enum Id {
    kConditions = 100,
    kTextLabel,
    kText,
    kById,
    kByKana,
    kByName,
    kSearch,
    kHitsLabel,
    kHits,
    kCount,
  };

  /// @param db             the connection to search on; must outlive the dialog
  /// @param withMaidenName names are shown with the maiden name, and found by it
  CQueryPatientDlg(CKovaDBSys* db, SearchMode mode, std::string text, bool withMaidenName);

  /// Runs it; the chosen patient's ID, empty when none was chosen.
  std::string Run(HWND parent);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  LRESULT OnNotify(const NMHDR& header) override;
  void OnTimer(UINT_PTR timer) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnKey(HWND focus, WPARAM key, bool alt) override;
  void OnOk() override;

  void UseMode(SearchMode mode);
  void Search();
  void SortBy(int column);
  void ShowHits(const std::optional<std::string>& selected);
  void GoToHits();
  std::string CellText(int row, int column) const;
  std::optional<std::string> SelectedPatient() const;

  CKovaDBSys* db_;
  SearchMode mode_;
  std::string text_;
  bool withMaidenName_;
  std::vector<PatientHit> hits_;
  window::VirtualList list_;
  std::optional<HitColumn> sortedBy_;
  bool descending_ = false;
  std::string chosen_;
};

}  // namespace kova::pickers
