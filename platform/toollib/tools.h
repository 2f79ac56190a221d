#pragma once

// Stand-in for the part of the suite's Tool library that the mails and the patient list need.

#include <string>
#include <string_view>

class CTools {
 public:
  /// A date YYYYMMDD as it is shown, "2026/11/22". Any other text comes back as it is.
  static std::string MakeDate(std::string_view date);

  /// A name with the maiden name behind it, "山田　花子（佐藤）"; the name alone when there is no maiden
  /// name.
  static std::string WithMaidenName(std::string_view name, std::string_view maidenName);

  /// The cash changer of this workstation: non-zero when there is one ("CASHCHANGER"/"OPTION" of the
  /// application profile). `device` receives what it is called ("DEVICE"); may be null.
  static unsigned GetCashChangerOption(std::string* device);
};
