// What becomes of an operation when the network or a server does not do what it should. Runs where the environment names a
// server (store_server.h).

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <thread>

#include "platform/os/clock.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "tests/recordstore/sales_at_work.h"
#include "tests/recordstore/small_disk.h"
#include "tests/recordstore/store_server.h"
#include "tests/recordstore/tcp_proxy.h"
#include "visitflow/board_session.h"
#include "visitflow/testing/board_text.h"
#include "visitflow/testing/small_practice.h"

namespace {

using kova::store::PutText;
using kova::store::Result;
using kova::store::On;
using kova::testing::Code;
using kova::testing::Environment;
using kova::testing::MakeSale;
using kova::testing::Proxy;
using kova::testing::SmallDisk;
using kova::testing::Timed;

std::string FirstHost() { return Environment("KOVA_SERVER_HOSTS").substr(0, Environment("KOVA_SERVER_HOSTS").find(',')); }

std::string OtherHosts() {
  const std::string hosts = Environment("KOVA_SERVER_HOSTS");
  const std::size_t comma = hosts.find(',');
  return comma == std::string::npos ? std::string() : hosts.substr(comma);
}

// Whether `condition` comes true: what one node has committed the others apply a little later.
template <typename Condition>
bool SoonTrue(Condition condition) {
  const std::int64_t deadline = kova::os::MonotonicMilliseconds() + 10000;
  while (!condition()) {
    if (kova::os::MonotonicMilliseconds() > deadline) return false;
    kova::os::SleepMilliseconds(10);
  }
  return true;
}

class ServerFaults : public testing::Test {
 protected:
  void SetUp() override {
    if (!kova::testing::OnServer()) GTEST_SKIP() << "no server in the environment";
    database_ = kova::testing::NewDatabaseName();
    Say(Environment("KOVA_SERVER_HOSTS"));
    std::string problem;
    ASSERT_EQ(KovaCreateDatabase(folder_.Path().c_str(), &problem), 0) << problem;
  }
  void Say(const std::string& hosts, const std::string& more = {}) {
    kova::testing::PutOnServer(folder_.Path(), database_, hosts, more);
  }
  int Open(CKovaDBSys& db) { return db.OpenDB(folder_.Path().c_str()); }

  /// By another connection, straight to the servers.
  std::size_t CountSales() {
    Say(Environment("KOVA_SERVER_HOSTS"));
    CKovaDBSys db;
    EXPECT_EQ(Open(db), 0) << db.GetProblem();
    return kova::testing::SaleNumbers(db).size();
  }

  /// With the server's own client; true when it worked.
  bool Sql(const std::string& sql, const std::string& account = Environment("KOVA_SERVER_OWNER"),
           const std::string& password = Environment("KOVA_SERVER_OWNER_PASSWORD")) {
    const std::string host = FirstHost(), port = host.substr(host.find(':') + 1);
    setenv("KOVA_SQL", sql.c_str(), 1);
    setenv("PGPASSWORD", password.c_str(), 1);
    setenv("MYSQL_PWD", password.c_str(), 1);
    const std::string client =
        Environment("KOVA_SERVER_KIND") == "PostgreSQL"
            ? "psql -q -v ON_ERROR_STOP=1 -h 127.0.0.1 -p " + port + " -U " + account + " -d " + database_
            : "mariadb -h 127.0.0.1 -P " + port + " -u " + account + " " + database_;
    return std::system(("printenv KOVA_SQL | " + client + " >/dev/null 2>&1").c_str()) == 0;
  }

  kova::os::testing::TemporaryFolder folder_{"server_faults"};
  std::string database_;
};

TEST_F(ServerFaults, ALostAnswerToACommitIsLookedUp) {
  Proxy proxy(FirstHost());
  Say(proxy.Host() + OtherHosts());
  CKovaDBSys db;
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  ASSERT_EQ(MakeSale(db), 0);
  proxy.Tell("lose");  // the server keeps the sale; nobody hears of it
  EXPECT_EQ(Timed([&] { return MakeSale(db); }), 0);
  ASSERT_EQ(proxy.Tell("state"), "pass");
  EXPECT_EQ(CountSales(), 2u);
  Say(proxy.Host() + OtherHosts());
  proxy.Tell("pass");
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  proxy.Tell("swallow");  // the server never hears of it
  EXPECT_EQ(Timed([&] { return MakeSale(db); }), Code(Result::kUnreachable));
  ASSERT_EQ(proxy.Tell("state"), "pass");
  EXPECT_EQ(CountSales(), 2u);
  EXPECT_EQ(MakeSale(db), 0);
  EXPECT_EQ(CountSales(), 3u);
}

TEST_F(ServerFaults, AServerThatFallsSilentIsGivenUpInTime) {
  Proxy proxy(FirstHost());
  Say(proxy.Host());
  CKovaDBSys db;
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  ASSERT_EQ(MakeSale(db), 0);
  On<CSaleDB> sales(db);
  ASSERT_EQ(sales.BeginTran(), 0);
  ASSERT_EQ(sales.GetFIRST(), 0);
  PutText(sales.record.patientCode, "2");
  ASSERT_EQ(sales.Update(UPDATE_ALWAYS), 0);
  proxy.Tell("hold");
  EXPECT_NE(Timed([&] { return sales.EndTran(); }), 0);
  EXPECT_EQ(Timed([&] { return sales.GetFIRST(); }), Code(Result::kUnreachable));
  CKovaDBSys other;
  EXPECT_EQ(Timed([&] { return Open(other); }), Code(Result::kUnreachable));
  proxy.Tell("pass");
  kova::os::SleepMilliseconds(3000);  // the rest after all servers were tried in vain
  EXPECT_EQ(Timed([&] { return sales.GetFIRST(); }), 0);
  EXPECT_STREQ(sales.record.patientCode, "1");  // nothing half-written
  EXPECT_EQ(Timed([&] { return MakeSale(db); }), 0);
}

TEST_F(ServerFaults, AWalkGoesOnOnAnotherServer) {
  if (OtherHosts().empty()) GTEST_SKIP() << "one server only";
  Proxy proxy(FirstHost());
  Say(proxy.Host() + OtherHosts());
  CKovaDBSys db;
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  for (int i = 0; i < 3; ++i) ASSERT_EQ(MakeSale(db), 0);
  On<CSaleDB> sales(db);
  ASSERT_EQ(sales.GetFIRST(), 0);
  proxy.Tell("refuse");
  EXPECT_EQ(Timed([&] { return sales.GetNEXT(); }), 0);
  EXPECT_STREQ(sales.record.saleNumber, "000000000002");
  EXPECT_EQ(Timed([&] { return MakeSale(db); }), 0);
  // From a server that is silent, too, in the same operation.
  proxy.Tell("pass");
  CKovaDBSys third;
  ASSERT_EQ(Open(third), 0);
  ASSERT_EQ(sales.SetAssociatedDB(&third), 0);
  ASSERT_EQ(sales.GetFIRST(), 0);
  proxy.Tell("hold");
  EXPECT_EQ(Timed([&] { return sales.GetNEXT(); }), 0);
  EXPECT_STREQ(sales.record.saleNumber, "000000000002");
  // In the middle of a transaction there is no way on, and nothing of it is kept.
  proxy.Tell("pass");
  CKovaDBSys second;
  ASSERT_EQ(Open(second), 0);
  ASSERT_EQ(sales.SetAssociatedDB(&second), 0);
  ASSERT_EQ(sales.BeginTran(), 0);
  ASSERT_EQ(sales.GetFIRST(), 0);
  ASSERT_EQ(sales.CBaseDBCall::Delete(), 0);
  proxy.Tell("refuse");
  EXPECT_NE(Timed([&] { return sales.GetFIRST(); }), 0);
  EXPECT_NE(sales.CBaseDBCall::Insert(), 0);
  EXPECT_NE(Timed([&] { return sales.EndTran(); }), 0);
  EXPECT_EQ(CountSales(), 4u);
  EXPECT_EQ(sales.GetFIRST(), 0);
}

TEST_F(ServerFaults, OfTwoNodesTransactionsTheFirstOneWins) {
  if (OtherHosts().empty()) GTEST_SKIP() << "one server only";
  CKovaDBSys first, second;
  ASSERT_EQ(Open(first), 0);
  ASSERT_EQ(MakeSale(first), 0);
  Say(OtherHosts().substr(1));
  ASSERT_EQ(Open(second), 0);
  On<CSaleDB> two(second);
  On<CSaleDB> one(first);
  ASSERT_EQ(one.BeginTran(), 0);
  ASSERT_EQ(two.BeginTran(), 0);
  ASSERT_EQ(one.GetFIRST(), 0);
  ASSERT_EQ(two.GetFIRST(), 0);
  PutText(one.record.patientCode, "one");
  ASSERT_EQ(one.Update(UPDATE_ALWAYS), 0);
  ASSERT_EQ(one.EndTran(), 0);
  PutText(two.record.patientCode, "two");
  const int updated = two.Update(UPDATE_ALWAYS), ended = two.EndTran();
  EXPECT_EQ(updated == 0 ? ended : updated, Code(Result::kConflict));
  ASSERT_TRUE(
      SoonTrue([&] { return two.GetFIRST() == 0 && kova::store::GetText(two.record.patientCode) == "one"; }));
  // What the store can retry by itself it does.
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(MakeSale(first), 0);
    ASSERT_EQ(MakeSale(second), 0);
  }
  EXPECT_EQ(CountSales(), 41u);
}

TEST_F(ServerFaults, DesksOnTwoNodesSellAtOnce) {
  if (OtherHosts().empty()) GTEST_SKIP() << "one server only";
  constexpr int kSales = 25;
  CKovaDBSys first, second;
  ASSERT_EQ(Open(first), 0);
  Say(OtherHosts().substr(1));
  ASSERT_EQ(Open(second), 0);
  std::map<int, int> results;  // how often each was given to the second desk
  std::thread desk([&] {
    for (int i = 0; i < kSales; ++i) ++results[MakeSale(second)];
  });
  int failed = 0;
  for (int i = 0; i < kSales; ++i) failed += MakeSale(first) != 0;
  desk.join();
  EXPECT_EQ(failed, 0);
  EXPECT_EQ(results, (std::map<int, int>{{0, kSales}})) << second.GetProblem();
  EXPECT_EQ(CountSales(), 2u * kSales);
}

TEST_F(ServerFaults, AUnitDoesNotGoOnInATransactionThatLost) {
  if (OtherHosts().empty()) GTEST_SKIP() << "one server only";
  CKovaDBSys first, second, witness;
  ASSERT_EQ(Open(first), 0);
  Say(OtherHosts().substr(1));
  ASSERT_EQ(Open(second), 0);
  ASSERT_EQ(Open(witness), 0);
  On<CSaleDB> two(second);
  ASSERT_EQ(two.BeginTran(), 0);
  ASSERT_EQ(MakeSale(first), 0);
  ASSERT_TRUE(SoonTrue([&] { return kova::testing::SaleNumbers(witness).size() == 1; }));
  EXPECT_EQ(MakeSale(second), Code(Result::kConflict));
  EXPECT_EQ(MakeSale(second), Code(Result::kNoTransaction));
  EXPECT_EQ(two.Insert(), Code(Result::kNoTransaction));
  EXPECT_EQ(two.EndTran(), Code(Result::kConflict));
  EXPECT_EQ(CountSales(), 1u);
  EXPECT_EQ(MakeSale(second), 0);
  EXPECT_EQ(CountSales(), 2u);
}

TEST_F(ServerFaults, WhatCannotBeUsedIsToldAndNamed) {
  const std::string hosts = Environment("KOVA_SERVER_HOSTS");
  CKovaDBSys db;
  Say(hosts, "Driver=No Such Driver\r\n");
  EXPECT_EQ(Open(db), Code(Result::kNoDriver));
  EXPECT_NE(db.GetProblem().find("No Such Driver"), std::string::npos) << db.GetProblem();
  Say("no-such-host.invalid:5432");
  EXPECT_EQ(Timed([&] { return Open(db); }), Code(Result::kUnreachable));
  Say("127.0.0.1:1," + hosts);  // nobody listens there: the next one is taken
  EXPECT_EQ(Open(db), 0) << db.GetProblem();
  for (const char* bad : {"", "a:b", "a:99999", "[::1", ":5432"}) {
    Say(bad);
    EXPECT_EQ(Open(db), Code(Result::kBadArgument)) << bad;
    EXPECT_NE(db.GetProblem().find("Hosts"), std::string::npos) << bad;
  }
  Say(hosts);
  const std::string password = Environment("KOVA_DB_PASSWORD");
  setenv("KOVA_DB_PASSWORD", "wrong;}' password", 1);
  EXPECT_EQ(Open(db), Code(Result::kNoAccess)) << db.GetProblem();
  EXPECT_EQ(db.GetProblem().find("wrong;}"), std::string::npos);
  setenv("KOVA_DB_PASSWORD", password.c_str(), 1);
  EXPECT_EQ(KovaCreateDatabase(folder_.Path().c_str()), Code(Result::kDuplicate));
  database_ = "kova_no_such";
  Say(hosts);
  EXPECT_EQ(Open(db), Code(Result::kNoDatabase)) << db.GetProblem();
  EXPECT_FALSE(db.IsOpen());
}

TEST_F(ServerFaults, AnotherLayoutIsRefusedOrUpgraded) {
  CKovaDBSys db;
  ASSERT_EQ(Open(db), 0);
  ASSERT_EQ(MakeSale(db), 0);
  db.CloseDB();
  ASSERT_TRUE(Sql("UPDATE store_info SET value = '4' WHERE name = 'layout'"));
  EXPECT_EQ(Open(db), Code(Result::kWrongVersion));
  EXPECT_EQ(KovaUpgradeDatabase(folder_.Path().c_str()), Code(Result::kWrongVersion));
  ASSERT_TRUE(Sql("UPDATE store_info SET value = '1' WHERE name = 'layout'; DROP TABLE store_client; DROP TABLE journal_sale"));
  EXPECT_EQ(Open(db), Code(Result::kOldVersion));
  std::string problem;
  EXPECT_EQ(KovaUpgradeDatabase(folder_.Path().c_str(), &problem), 0) << problem;
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  EXPECT_EQ(MakeSale(db), 0);
  EXPECT_EQ(CountSales(), 2u);
  // A layout that was never finished is no practice, and can be finished.
  ASSERT_TRUE(Sql("DELETE FROM store_info"));
  EXPECT_EQ(Open(db), Code(Result::kNoDatabase));
  EXPECT_EQ(KovaCreateDatabase(folder_.Path().c_str(), &problem), 0) << problem;
  EXPECT_EQ(CountSales(), 0u);
}

TEST_F(ServerFaults, AnotherServerIsToldAndNamed) {
  Proxy proxy(FirstHost());
  Say(proxy.Host());
  CKovaDBSys db;
  proxy.Tell("old");
  EXPECT_EQ(Open(db), Code(Result::kWrongVersion));
  EXPECT_NE(db.GetProblem().find("or newer"), std::string::npos) << db.GetProblem();
  proxy.Tell("babble");
  EXPECT_EQ(Timed([&] { return Open(db); }), Code(Result::kUnreachable)) << db.GetProblem();
}

TEST_F(ServerFaults, ARefusalInAnotherLanguageIsUnderstood) {
  Proxy proxy(FirstHost());
  proxy.Tell("foreign");
  Say(proxy.Host());
  CKovaDBSys db;
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  const std::string password = Environment("KOVA_DB_PASSWORD");
  setenv("KOVA_DB_PASSWORD", "wrong", 1);
  EXPECT_EQ(Open(db), Code(Result::kNoAccess)) << db.GetProblem();
  setenv("KOVA_DB_PASSWORD", password.c_str(), 1);
  database_ = kova::testing::NewDatabaseName();
  Say(proxy.Host());
  EXPECT_EQ(Open(db), Code(Result::kNoDatabase)) << db.GetProblem();
  std::string problem;
  EXPECT_EQ(KovaCreateDatabase(folder_.Path().c_str(), &problem), 0) << problem;
  EXPECT_EQ(Open(db), 0) << db.GetProblem();
}

TEST_F(ServerFaults, StampsGoOnWhenAClockIsSetBack) {
  CKovaDBSys db;
  long long before = 0, after = 0;
  ASSERT_EQ(Open(db), 0);
  ASSERT_EQ(MakeSale(db), 0);
  ASSERT_TRUE(Sql("UPDATE change_stamp SET stamp = stamp + 3600"));
  ASSERT_EQ(db.GetChangeStamp({kova::store::TableId::Sale}, before), 0);
  ASSERT_EQ(MakeSale(db), 0);
  ASSERT_EQ(db.GetChangeStamp({kova::store::TableId::Sale}, after), 0);
  EXPECT_GT(after, before);
}

TEST_F(ServerFaults, AFullDiskIsToldAndNothingIsHalfWritten) {
  const bool isCluster = Environment("KOVA_SERVER_KIND") != "PostgreSQL";
  const auto admin = [&](const std::string& sql) {
    return Sql(sql, Environment("KOVA_SERVER_ADMIN"), Environment("KOVA_SERVER_ADMIN_PASSWORD"));
  };
  const std::string small = kova::testing::NewDatabaseName();
  ASSERT_TRUE(!isCluster || admin("CREATE DATABASE " + small + " CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin"));
  // On a cluster the first node's files of the database; else where the sales are put.
  const SmallDisk disk(isCluster ? Environment("KOVA_SERVER_FOLDER") + "/node1/data/" + small : "/tmp/" + small, isCluster ? 24 : 1);
  if (!disk.IsThere()) GTEST_SKIP() << "no disk of its own can be mounted";
  if (isCluster) {
    database_ = small;
    Say(FirstHost());
    std::string problem;
    EXPECT_EQ(KovaCreateDatabase(folder_.Path().c_str(), &problem), 0) << problem;
  } else {
    EXPECT_TRUE(admin("CREATE TABLESPACE " + small + " LOCATION '/tmp/" + small + "'; ALTER TABLE sale SET TABLESPACE " + small));
  }
  CKovaDBSys db;
  EXPECT_EQ(Open(db), 0) << db.GetProblem();
  EXPECT_EQ(MakeSale(db), 0);
  disk.Fill();
  std::size_t made = 1;
  int result = 0;
  for (; result == 0 && made < 2000; made += result == 0) result = MakeSale(db);
  EXPECT_EQ(result, Code(Result::kFull)) << db.GetProblem();
  EXPECT_EQ(MakeSale(db), Code(Result::kFull));
  EXPECT_EQ(CountSales(), made);
  disk.Clear();
  EXPECT_EQ(MakeSale(db), 0);
  EXPECT_EQ(CountSales(), made + 1);
  db.CloseDB();
  if (isCluster) {
    // The folder itself is where the disk is mounted: the database goes when that is gone.
    std::string tables;
    for (const kova::store::TableDef& table : kova::store::AllTables())
      tables += "DROP TABLE `" + std::string(table.name) + "`, `" + std::string(kova::store::JournalOf(table.id).name) + "`;";
    EXPECT_TRUE(admin(tables + "DROP TABLE store_info, counter, change_stamp, store_client"));
  } else {
    EXPECT_TRUE(admin("ALTER TABLE sale SET TABLESPACE pg_default; DROP TABLESPACE " + small));
  }
}

TEST_F(ServerFaults, ABoardKeepsWhatItShowedAndRecovers) {
  namespace desk = kova::visitflow::testing;
  using kova::visitflow::BoardButton;
  using kova::visitflow::MoveOutcome;
  struct Silent final : kova::foundation::Prompts {
    bool AskYesNo(std::string_view) override { return false; }
    void Inform(std::string_view) override { ADD_FAILURE() << "a box"; }
  } prompts;
  Proxy proxy(FirstHost());
  Say(proxy.Host());
  CKovaDBSys db, other;
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  ASSERT_EQ(desk::FillPractice(db), 0);
  const kova::os::IniApplicationProfile profile(kova::os::RealFiles(), folder_.Path() + "app.ini");
  kova::foundation::SettingsStore settings(profile, kova::os::RealFiles());
  kova::visitflow::BoardSession board({&db, settings, prompts, {}, [] { return std::optional(kova::os::LocalTime()); }}, desk::kDay);
  const auto shown = [&] { return desk::BoardText(board.Shown(), board.Stages()); };
  board.Open();
  const std::string before = shown();
  ASSERT_EQ(before, "before: 1 2 | A: | B: 3 | done:");
  proxy.Tell("refuse");
  EXPECT_FALSE(board.Tick());
  EXPECT_NE(board.StatusLine().find("接続できません"), std::string::npos);
  EXPECT_EQ(Timed([&] { return static_cast<int>(board.Move(BoardButton::kBeforeToNext, {"1"}, {}).at(0).outcome); }),
            static_cast<int>(MoveOutcome::kFailed));
  EXPECT_EQ(shown(), before);
  Say(Environment("KOVA_SERVER_HOSTS"));
  ASSERT_EQ(Open(other), 0);
  EXPECT_EQ(kova::visitflow::MoveReservation(&other, settings.Open(), "2", "", BoardButton::kBeforeToNext, board.Stages(), {})
                .outcome,
            MoveOutcome::kDone);
  proxy.Tell("pass");
  kova::os::SleepMilliseconds(3000);
  EXPECT_TRUE(board.Tick());
  EXPECT_EQ(board.StatusLine().find("接続できません"), std::string::npos);
  EXPECT_EQ(shown(), "before: 1 | A: 2 | B: 3 | done:");
}

TEST_F(ServerFaults, TheDesksAccountMayWorkAndNoMore) {
  const std::string owner = Environment("KOVA_DB_ACCOUNT"), password = Environment("KOVA_DB_PASSWORD");
  setenv("KOVA_DB_ACCOUNT", "kova_desk", 1);
  Say(Environment("KOVA_SERVER_HOSTS"));
  std::string rights;
  ASSERT_EQ(KovaServerRights(folder_.Path().c_str(), rights), 0);
  setenv("KOVA_DB_PASSWORD", Environment("KOVA_SERVER_DESK_PASSWORD").c_str(), 1);
  CKovaDBSys db;
  EXPECT_NE(Open(db), 0);
  ASSERT_TRUE(Sql(rights));
  ASSERT_EQ(Open(db), 0) << db.GetProblem();
  EXPECT_EQ(MakeSale(db), 0);
  EXPECT_FALSE(Sql("DROP TABLE sale", "kova_desk", Environment("KOVA_SERVER_DESK_PASSWORD")));
  EXPECT_FALSE(Sql("ALTER TABLE sale ADD extra integer", "kova_desk", Environment("KOVA_SERVER_DESK_PASSWORD")));
  EXPECT_FALSE(Sql("UPDATE store_info SET value = '9'", "kova_desk", Environment("KOVA_SERVER_DESK_PASSWORD")));
  EXPECT_FALSE(Sql("CREATE TABLE extra (id integer)", "kova_desk", Environment("KOVA_SERVER_DESK_PASSWORD")));
  // An account that may only read.
  const bool isPostgres = Environment("KOVA_SERVER_KIND") == "PostgreSQL";
  ASSERT_TRUE(Sql(isPostgres ? "REVOKE UPDATE ON counter FROM kova_desk"
                             : "REVOKE UPDATE ON " + database_ + ".counter FROM kova_desk@'%'"));
  CKovaDBSys reader;
  ASSERT_EQ(Open(reader), 0) << reader.GetProblem();
  EXPECT_EQ(MakeSale(reader), Code(Result::kReadOnly));
  On<CSaleDB> sales(reader);
  EXPECT_EQ(sales.GetFIRST(), 0);
  setenv("KOVA_DB_ACCOUNT", owner.c_str(), 1);
  setenv("KOVA_DB_PASSWORD", password.c_str(), 1);
}

TEST_F(ServerFaults, EncryptionVerifiesTheServerWhereAnAuthorityIsNamed) {
  const std::string hosts = Environment("KOVA_SERVER_HOSTS");
  CKovaDBSys db;
  Say(hosts, "Encryption=always\r\n");
  EXPECT_EQ(Open(db), 0) << db.GetProblem();
  const auto copy = [&](const char* name) {
    EXPECT_EQ(std::system(("cp " + Environment(name) + " " + folder_.Argument() + "/ca.pem").c_str()), 0);
  };
  copy("KOVA_SERVER_CA");
  Say(hosts, "Certificate=ca.pem\r\n");
  EXPECT_EQ(Open(db), 0) << db.GetProblem();
  copy("KOVA_SERVER_OTHER_CA");
  EXPECT_EQ(Open(db), Code(Result::kUnreachable)) << "a stranger's server was taken";
}

}  // namespace
