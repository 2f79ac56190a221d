#pragma once

// The popup that enters a date by eras: a list of eras and three fields that behave as one.

#include <optional>
#include <string>

#include "controls/era_date.h"
#include "window/dialog.h"

namespace kova::controls {

class DateInputDialog final : public window::Dialog {
 public:
  enum Id { kEraLabel = 100, kEra, kYearLabel, kYear, kMonthLabel, kMonth, kDayLabel, kDay, kNote };

  /// @param date   shown at first
  /// @param cover  the window that the popup lies over; null: over the middle of its owner
  /// @param today  for the date of a birth: the day to reckon the age on
  DateInputDialog(const WesternDate& date, HWND cover, const std::optional<WesternDate>& today);

  /// The date as it was confirmed; before and without that the one that was given.
  const WesternDate& Date() const { return date_; }

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  bool HasFrame() const override { return false; }
  window::Rect FirstPlace() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  bool OnKey(HWND focus, WPARAM key, bool alt) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  void OnOk() override;

  void Show(const EraDate& date);
  void ShowPart(int control, int number);
  EraDate Shown() const;
  std::string TextOf(int control) const;
  int SelectedEra() const;
  void ShowNote();
  void OnYearChange();
  void SpreadTypedDate();
  bool TakeEraLetter(WPARAM key);
  bool CountOn(HWND focus, int step);
  void HoldMouse();
  void OnClick(POINT at);

  WesternDate date_;
  HWND cover_;
  std::optional<WesternDate> today_;
  bool filling_ = false;
  std::size_t yearLength_ = 0;  // of the year field's text when it last changed
};

}  // namespace kova::controls
