#pragma once

// A practice of a few records in a folder of its own, and the application object of a host that works on it.

#include <afxwin.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "hosts/person/window_driver.h"
#include "platform/os/files.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "tests/recordstore/store_server.h"

namespace kova::testing {

/// person::Drive, where a person who fails is a failure of the test.
inline void Work(const std::function<void()>& program, const std::function<void()>& person) {
  EXPECT_EQ(person::Drive(program, person), "");
}

class WindowPractice {
 public:
  explicit WindowPractice(const std::string& name) : folder_(name), profile_(folder_.Path() + "app.ini") {
    (void)os::RealFiles().Replace(profile_, "[GLOBAL]\r\nDATABASE=" + folder_.Path() + "\r\n");
    (void)os::RealFiles().MakeFolder(folder_.Path() + "templates");
    app_.m_pszProfileName = profile_.c_str();
    PutOnServer(folder_.Path(), NewDatabaseName());
    KovaCreateDatabase(folder_.Path().c_str());
    EXPECT_EQ(Open(), 0) << database_.GetProblem();
  }

  const std::string& Folder() const { return folder_.Path(); }
  std::filesystem::path Native() const { return folder_.Native(); }
  /// The application profile as a program's argument.
  std::string Profile() const { return folder_.Argument() + "app.ini"; }
  CKovaDBSys& Database() { return database_; }
  int Open() { return database_.OpenDB(folder_.Path().c_str()); }

 private:
  os::testing::TemporaryFolder folder_;
  std::string profile_;
  CWinApp app_;
  CKovaDBSys database_;
};

}  // namespace kova::testing
