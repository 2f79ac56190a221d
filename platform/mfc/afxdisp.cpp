#include "afxdisp.h"

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second)
    : year_(year), month_(month), day_(day), hour_(hour), minute_(minute), second_(second) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  const bool monthOk = month >= 1 && month <= 12;
  const int days = monthOk ? kDays[month - 1] + (month == 2 && leap ? 1 : 0) : 0;
  const bool timeOk = hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
  if (year < 100 || year > 9999 || day < 1 || day > days || !timeOk) status_ = invalid;
}
