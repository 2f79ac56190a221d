#pragma once

// Stand-in for the part of MFC's afxdisp.h (ATL's atlcomtime.h) that stands in exported signatures; see
// afx.h.

#include "mfc_stand_in_export.h"

/// A date and time as days since 1899-12-30, with a status.
class COleDateTime {
 public:
  enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

  /// 1899-12-30, valid.
  COleDateTime() = default;
  /// Invalid when it is no date of the years 100 to 9999.
  MFC_STAND_IN_API COleDateTime(int year, int month, int day, int hour, int minute, int second);

  DateTimeStatus GetStatus() const { return status_; }
  void SetStatus(DateTimeStatus status) { status_ = status; }
  /// The parts of the date; -1 each when the status is not valid.
  int GetYear() const { return Part(year_); }
  int GetMonth() const { return Part(month_); }
  int GetDay() const { return Part(day_); }
  int GetHour() const { return Part(hour_); }
  int GetMinute() const { return Part(minute_); }
  int GetSecond() const { return Part(second_); }

 private:
  int Part(int value) const { return status_ == valid ? value : -1; }

  int year_ = 1899;
  int month_ = 12;
  int day_ = 30;
  int hour_ = 0;
  int minute_ = 0;
  int second_ = 0;
  DateTimeStatus status_ = valid;
};
