#pragma once

// Stand-in for the part of the suite's Tool library that the library needs.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/os/files.h"

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

  /// A number with thousands separators, "-1,234,567".
  static std::string NumericFormat(std::int64_t number);

  /// True when there is a file (not a folder) of that full name.
  static bool ExistFile(std::string_view path);

  /// `path` with a "\" behind it, unless it is empty or ends in one; and without the one at its end.
  static std::string LastDelimAdd(std::string_view path);
  static std::string LastDelimDel(std::string_view path);

  /// How a folder is copied.
  struct Copying {
    std::string_view lastFile;                // a name at the top of the folder that is copied last
    std::function<bool(double done)> report;  // 0 to 1; false stops. May be null
  };

  /// Copies all files of a folder, and of the folders in it, into the folder `to`, which is made when
  /// missing. When it fails or is stopped (kBusy), the files that it made are gone again.
  ///
  /// @param keep  other than 0: a file that is there already is never written over. One with the same content
  ///              counts as copied, any other ends the copying (kChanged). 0: it is replaced, for good
  [[nodiscard]] static kova::os::FileOutcome DirectoryCopy(kova::os::Files& files, std::string_view from,
                                                           std::string_view to, int keep,
                                                           const Copying& how = {});
};
