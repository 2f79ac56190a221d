#pragma once

// What a host application has: the application object with its profile, and the practice's database that the
// profile names.

#include <afxwin.h>

#include <string>
#include <string_view>

#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {

class Practice {
 public:
  /// With no profile at all: every setting has its default and there is no database.
  Practice() = default;

  /// Uses `profile` (UTF-8 file name) as the application profile. Throws UsageError when there is no such
  /// file.
  void UseProfile(std::string_view profile);

  /// The practice's database folder, code page 932; empty when the profile names none.
  std::string DatabaseFolder();

  /// The connection, opened at its first use. Throws UsageError when the database cannot be opened.
  CKovaDBSys& Database();

  /// The connection as it is, open or not.
  CKovaDBSys& Connection() { return database_; }

 private:
  std::string profile_;
  CWinApp app_;
  CKovaDBSys database_;
};

/// "12 (the folder holds no database)".
std::string DescribeResult(int result);

}  // namespace kova::hosts
