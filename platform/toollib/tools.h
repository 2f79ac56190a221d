#pragma once

// Stand-in for the part of the suite's Tool library that the mails need.

#include <string>
#include <string_view>

class CTools {
 public:
  /// A date YYYYMMDD as it is shown, "2026/11/22". Any other text comes back as it is.
  static std::string MakeDate(std::string_view date);
};
