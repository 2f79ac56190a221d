#include "hosts/console/practice.h"

#include "hosts/console/console.h"
#include "platform/os/files.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {

void Practice::UseProfile(std::string_view profile) {
  profile_ = TextArgument(profile, "the profile's name");
  if (os::RealFiles().Kind(profile_) != os::PathKind::kFile)
    throw UsageError("there is no application profile " + std::string(profile));
  app_.m_pszProfileName = profile_.c_str();
}

std::string Practice::DatabaseFolder() {
  return app_.m_pszProfileName == nullptr
             ? std::string()
             : std::string(app_.GetProfileString("GLOBAL", "DATABASE", "").GetString());
}

CKovaDBSys& Practice::Database() {
  if (database_.IsOpen() != 0) return database_;
  if (app_.m_pszProfileName == nullptr) throw UsageError("needs --app FILE.ini, which names the database");
  const std::string folder = DatabaseFolder();
  if (folder.empty()) throw UsageError("the profile names no database folder (section GLOBAL, key DATABASE)");
  const int result = database_.OpenDB(folder.c_str());
  if (result != 0) {
    throw UsageError("cannot open the database in " + ShowControls(text932::ToUtf8(folder)) + ": result " +
                     DescribeResult(result) +
                     (database_.GetProblem().empty() ? "" : "; " + ShowControls(database_.GetProblem())));
  }
  return database_;
}

std::string DescribeResult(int result) {
  return std::to_string(result) + " (" + store::Describe(static_cast<store::Result>(result)) + ")";
}

}  // namespace kova::hosts
