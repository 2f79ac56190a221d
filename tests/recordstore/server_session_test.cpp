// A session on a database server.

#include <gtest/gtest.h>

#include <string>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/odbc/session.h"
#include "tests/recordstore/store_server.h"

namespace kova::testing {
namespace {

using store::Result;

// A workstation that lost its connection ends the session that it had. By then the number may be another one's: a server that
// was restarted counts from the beginning, a system gives numbers of processes again.
TEST(ServerSession, OnlyTheVerySessionThatWasLostIsEnded) {
  const os::testing::TemporaryFolder folder("session");
  PutOnServer(folder.Path(), "kova_test");
  store::ServerSettings settings;
  std::string problem;
  ASSERT_EQ(store::ReadServerSettings(folder.Path(), settings, problem), Result::kDone) << problem;
  const std::shared_ptr<const store::Dialect> dialect = store::MakeDialect(settings.kind);
  store::odbc::Session desk(dialect), lost(dialect);
  for (store::odbc::Session* each : {&desk, &lost})
    ASSERT_EQ(each->Open(settings, settings.hosts.front(), ""), Result::kDone) << each->Problem();

  const std::string id = lost.Id();
  const std::size_t blank = id.find(' ');
  ASSERT_NE(blank, std::string::npos) << id;
  std::string ofAnEarlierStart = id;
  char& digit = ofAnEarlierStart[id.size() - 4];
  digit = digit == '0' ? '9' : static_cast<char>(digit - 1);
  EXPECT_EQ(desk.Run(dialect->EndSessionSql(ofAnEarlierStart)), Result::kDone) << desk.Problem();
  EXPECT_EQ(lost.Run("SELECT 1"), Result::kDone);
  EXPECT_EQ(desk.Run(dialect->EndSessionSql(id)), Result::kDone) << desk.Problem();
  EXPECT_NE(lost.Run("SELECT 1"), Result::kDone);
  EXPECT_EQ(desk.Run("SELECT 1"), Result::kDone);
}

}  // namespace
}  // namespace kova::testing
