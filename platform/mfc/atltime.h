#pragma once

// Stand-in for the part of ATL's atltime.h that stands in exported signatures; see afx.h.

#include <cstdint>

/// A point in time in whole seconds since 1970-01-01 00:00 UTC.
class CTime {
 public:
  CTime() = default;
  explicit CTime(std::int64_t seconds) : seconds_(seconds) {}
  std::int64_t GetTime() const { return seconds_; }
  friend bool operator==(CTime a, CTime b) { return a.seconds_ == b.seconds_; }
  friend bool operator!=(CTime a, CTime b) { return a.seconds_ != b.seconds_; }
  friend bool operator<(CTime a, CTime b) { return a.seconds_ < b.seconds_; }

 private:
  std::int64_t seconds_ = 0;
};
