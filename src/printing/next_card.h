#pragma once

// A patient's next appointments as a card or form shows them. Layout shared with hosts; do not change. Texts
// are code page 932, zero-terminated within their fields, and all empty where there is no appointment.

#include <cstddef>

struct _NEXTCARD {
  char date[11];    ///< "2026/11/24"
  char weekday[3];  ///< "火"
  char start[6];    ///< "09:30"
  char end[6];
  char type[41];    ///< name of the reservation type
  char doctor[41];  ///< name of the doctor
  char unit[41];    ///< name of the unit
  char reason[41];  ///< name of the reason
};

struct _NEXTCARDDATA {
  static constexpr std::size_t kCount = 4;
  _NEXTCARD appointments[kCount];  ///< in order of date and time
};
