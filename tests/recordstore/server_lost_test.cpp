// Sales go on while a server is lost: cut off, killed, standing still. Runs on a workstation's machine in the servers' own
// network (scripts/cluster_net.sh), which the test loses them in.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/os/clock.h"
#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "tests/recordstore/sales_at_work.h"
#include "tests/recordstore/store_server.h"

namespace {

using kova::store::PutText;
using kova::store::Result;
using kova::store::On;
using kova::testing::Code;
using kova::testing::Environment;
using kova::testing::Timed;

struct Loss {
  const char* name;
  const char* lose;
  const char* mend;
};

class ServerLost : public testing::TestWithParam<Loss> {
 protected:
  void SetUp() override {
    kova::testing::PutOnServer(folder_.Path(), kova::testing::NewDatabaseName());
    std::string problem;
    int created = -1;  // what the case before lost may still be coming back
    for (int i = 0; i < 10 && created != 0; ++i) {
      created = KovaCreateDatabase(folder_.Path().c_str(), &problem);
      if (created != 0) kova::os::SleepMilliseconds(2000);
    }
    ASSERT_EQ(created, 0) << problem;
    ASSERT_EQ(db_.OpenDB(folder_.Path().c_str()), 0) << db_.GetProblem();
  }
  static bool Network(const std::string& what) {
    const bool cluster = Environment("KOVA_SERVER_KIND") == "MariaDB";
    return std::system(("scripts/cluster_net.sh " + what + (cluster ? " 1" : " postgres") + " >/dev/null").c_str()) == 0;
  }
  /// One more sale, within the time that a desk is kept waiting.
  int MakeSale() {
    CString number;
    const int result = Timed([&] { return kova::testing::MakeSale(db_, number); }, &longest_);
    if (result == 0) told_.emplace_back(number.GetString());
    unknown_ += result == Code(Result::kOutcomeUnknown) ? 1 : 0;
    return result;
  }

  kova::os::testing::TemporaryFolder folder_{"server_lost"};
  CKovaDBSys db_;
  std::vector<std::string> told_;  // numbers of the sales that were said to be made
  int unknown_ = 0;
  std::int64_t longest_ = 0;
};

TEST_P(ServerLost, NoSaleIsDoubledAndNoneIsMissing) {
  for (int i = 0; i < 20; ++i) ASSERT_EQ(MakeSale(), 0);
  // In the middle of a transaction.
  On<CSaleDB> sales(db_);
  ASSERT_EQ(sales.BeginTran(), 0);
  ASSERT_EQ(sales.GetFIRST(), 0);
  PutText(sales.record.patientCode, "half");
  ASSERT_EQ(sales.Update(UPDATE_ALWAYS), 0);
  ASSERT_TRUE(Network(GetParam().lose));
  const int ended = Timed([&] { return sales.EndTran(); });
  int failed = 0;
  const std::int64_t until = kova::os::MonotonicMilliseconds() + 15000;
  while (kova::os::MonotonicMilliseconds() < until) {
    failed += MakeSale() == 0 ? 0 : 1;
    kova::os::SleepMilliseconds(50);
  }
  if (Environment("KOVA_SERVER_KIND") == "MariaDB") {
    EXPECT_EQ(MakeSale(), 0) << "no other node was found";
  }
  ASSERT_TRUE(Network(GetParam().mend));
  int last = -1;
  for (int i = 0; i < 10 && last != 0; ++i) {
    last = MakeSale();
    if (last != 0) kova::os::SleepMilliseconds(2000);
  }
  EXPECT_EQ(last, 0);

  // Every number that was told is there, once; of what nobody knew, at most that many more.
  const std::vector<std::string> stored = kova::testing::SaleNumbers(db_);
  EXPECT_GE(stored.size(), told_.size());
  EXPECT_LE(stored.size(), told_.size() + static_cast<std::size_t>(unknown_));
  EXPECT_TRUE(std::adjacent_find(told_.begin(), told_.end()) == told_.end());
  EXPECT_TRUE(std::includes(stored.begin(), stored.end(), told_.begin(), told_.end()));
  ASSERT_EQ(sales.SetAssociatedDB(&db_), 0);
  ASSERT_EQ(sales.GetFIRST(), 0);
  if (ended != Code(Result::kOutcomeUnknown)) {
    EXPECT_STREQ(sales.record.patientCode, ended == 0 ? "half" : "1");
  }
  std::printf("%s: %zu sales told, %d failed, %d unknown, the longest took %lld ms\n", GetParam().name, told_.size(),
              failed, unknown_, static_cast<long long>(longest_));
}

INSTANTIATE_TEST_SUITE_P(Servers, ServerLost,
                         testing::Values(Loss{"cut", "cut", "mend"}, Loss{"killed", "kill", "restart"},
                                         Loss{"frozen", "freeze", "thaw"}),
                         [](const testing::TestParamInfo<Loss>& loss) { return loss.param.name; });

}  // namespace
