#include <gtest/gtest.h>

#include <cstdlib>

#include "hosts/companions/form_page.h"
#include "platform/os/files.h"
#include "printing/testing/worked_receipts.h"
#include "tests/run_program.h"

namespace kova {
namespace {

using printing::PrintData;
using printing::WritePrintData;
using printing::testing::DataOf;
using printing::testing::ForPatient;
using printing::testing::ReceiptBuilder;
using printing::testing::Settings;
using testing::ProgramRun;

std::filesystem::path Printer() {
  return testing::BuiltProgram("x").parent_path() / "Option" / "FormPrinter.exe";
}

class FormPrinter : public ::testing::Test {
 protected:
  void Put(const std::string& name, const std::string& bytes) {
    ASSERT_EQ(os::RealFiles().Replace(in.Path() + name, bytes), os::FileOutcome::kOk);
  }
  bool Exists(const std::string& path) { return os::RealFiles().Kind(path) == os::PathKind::kFile; }
  std::string Page(const std::string& name) {
    std::string bytes;
    (void)os::RealFiles().Read(out.Path() + name, 1 << 20, bytes);
    return bytes;
  }

  os::testing::TemporaryFolder in{"prints"};
  os::testing::TemporaryFolder out{"pages"};
};

TEST_F(FormPrinter, TakesUpWhatIsCompleteAndLeavesTheRest) {
  for (const auto& worked : printing::testing::WorkedReceipts())
    Put(std::string(worked.name) + ".tmp", WritePrintData(worked.data));
  Put("half.tm_", "[page]\r\n");
  Put("wrong.tmp", "[page]\r\npagecount=2\r\n");
  const ProgramRun run = testing::RunProgram(Printer(), {in.Argument(), out.Argument()});
  EXPECT_EQ(run.code, 1);
  EXPECT_NE(run.err.find("wrong.tmp:2: \"pagecount=1\" is expected"), std::string::npos) << run.err;
  EXPECT_TRUE(Exists(in.Path() + "half.tm_"));
  EXPECT_TRUE(Exists(in.Path() + "wrong.tmp"));
  EXPECT_FALSE(Exists(in.Path() + "tax-on-top.tmp"));
  EXPECT_FALSE(Exists(out.Path() + "wrong.html"));
  const std::string page = Page("with-a-discount.html");
  for (const char* part : {"&yen;83,300", "83,000 (", "T0000000000000", "7,545", "-&yen;5,000"})
    EXPECT_NE(page.find(part), std::string::npos) << part;
}

TEST_F(FormPrinter, TextsAreTextsAndNoMarkup) {
  ReceiptBuilder receipt;
  receipt.Line("<script>alert(1)</script>&\"\\", 1, 1, 1);
  const std::string page = companions::FormPage(DataOf(receipt.GetAsGiven()));
  EXPECT_EQ(page.find("<script"), std::string::npos);
  EXPECT_NE(page.find("&lt;script&gt;alert(1)&lt;/script&gt;&amp;&quot;&yen;"), std::string::npos);
}

// The pages that are looked at: left in the folder that the test run names.
TEST_F(FormPrinter, PagesToLookAt) {
  const char* folder = std::getenv("KOVA_PAGES");
  if (folder == nullptr) GTEST_SKIP() << "KOVA_PAGES names no folder for them";
  for (const auto& worked : printing::testing::WorkedReceipts())
    Put(std::string(worked.name) + ".tmp", WritePrintData(worked.data));
  ReceiptBuilder receipt;
  ForPatient(receipt);
  for (int i = 0; i < 30; ++i) {
    receipt.Points("歯冠修復及び欠損補綴（補綴時診断）第" + std::to_string(i), std::to_string(i + 1),
                   1000 + i, 3000);
    receipt.Yen("ｾﾗﾐｯｸｲﾝﾚｰ　左上第一大臼歯、左上第二大臼歯", 2, 65000, TMPTAX_ON_TOP, i % 5 == 0);
  }
  Put("long.tmp",
      WritePrintData(DataOf(receipt.Get(), Settings("PrintInsPrice=1\nPrintListSum4=1\nPrintUnitPrice=1\n"),
                            KOVA_PRINT_REISSUED)));
  EXPECT_EQ(testing::RunProgram(Printer(), {in.Argument(), folder}).code, 0);
}

}  // namespace
}  // namespace kova
