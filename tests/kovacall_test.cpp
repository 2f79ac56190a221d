// kovacall as the support engineer meets it: a real process, its exit code and what it prints.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "tests/run_program.h"

namespace {

using kova::testing::BuiltCompanion;
using kova::testing::BuiltProgram;
using kova::testing::ProgramRun;
using kova::testing::RunProgram;
using Arguments = std::vector<std::string>;

std::string U(const char8_t* text) { return reinterpret_cast<const char*>(text); }

class Kovacall : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(RunProgram(BuiltProgram("kovacall"), {"create-db", Folder()}).out, "0\n");
    std::ofstream(folder_.Native() / "app.ini", std::ios::binary)
        << "[GLOBAL]\r\nDATABASE=" << folder_.Path() << "\r\n";
    std::ofstream(folder_.Native() / "GLOBALSETTING.ini", std::ios::binary)
        << "[GLOBAL]\r\nConsumptionTax=1\r\n[MENTE]\r\nTaxCount=2\r\n"
           "TaxFrm01=20140401\r\nTaxTo01=20190930\r\nTaxRate01=8\r\n"
           "TaxFrm02=20191001\r\nTaxTo02=99991231\r\nTaxRate02=10\r\nTaxRate202=8\r\n";
  }

  std::string Folder() const { return folder_.Argument(); }
  std::string Profile() const { return Folder() + "app.ini"; }

  ProgramRun Call(Arguments arguments) const {
    arguments.insert(arguments.begin(), {"--app", Profile()});
    return RunProgram(BuiltProgram("kovacall"), arguments);
  }
  void ExpectOut(const Arguments& arguments, const std::string& out) const {
    const ProgramRun run = Call(arguments);
    EXPECT_EQ(run.code, 0) << testing::PrintToString(arguments) << run.err;
    EXPECT_EQ(run.out, out) << testing::PrintToString(arguments);
  }
  /// The last record of a table, by column names.
  std::map<std::string, std::string> LastRecord(const std::string& table) const {
    const std::vector<std::string> lines = Split(Call({"dump", table}).out, '\n');
    if (lines.size() < 2) return {};
    const std::vector<std::string> names = Split(lines.front(), '\t');
    const std::vector<std::string> values = Split(lines.back(), '\t');
    EXPECT_EQ(names.size(), values.size());
    std::map<std::string, std::string> record;
    for (std::size_t i = 0; i < std::min(names.size(), values.size()); ++i) record[names[i]] = values[i];
    return record;
  }
  /// The mails in the outbox.
  std::vector<std::string> Mails() const {
    std::vector<std::string> mails;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Native() / "outbox"))
      if (entry.path().extension() == ".eml") mails.push_back(U(entry.path().u8string().c_str()));
    return mails;
  }
  static std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t from = 0; from < text.size() || (separator == '\t' && from == text.size());) {
      const std::size_t to = std::min(text.find(separator, from), text.size());
      parts.push_back(text.substr(from, to - from));
      from = to + 1;
    }
    return parts;
  }

  kova::os::testing::TemporaryFolder folder_{"kovacall"};
};

TEST_F(Kovacall, PrintsResultsAndOutParameters) {
  const struct {
    Arguments arguments;
    std::string out;
  } cases[] = {
      {{"GetTaxRate", "20191001", "", "1"}, "0.08\n"},
      {{"GetTaxRate", "20130101", "", "0"}, "0\n"},
      {{"RoundOff", "2", "100.01"}, "101\n"},
      {{"RoundOff", "7", "-3.9"}, "-3\n"},
      {{"CalcContribution", "1", "points=1234", "burdenPercent=30", "publicAmount=200"},
       "contribution=3700\nnet=3500\n"},
      {{"CalcPublicContribution", "1", "flatAmountFlag=1", "publicAmount=500"}, "0\n"},
      {{"GetReceptPercent", "20240231"}, "0\n"},
      {{"cmpRecept", "-1", "1"}, "-1\n"},
      {{"CmpAdd", "A", "B", "B"}, "1\nlist[0]=A\nlist[1]=B\n"},
      {{"CmpAdd", "C"}, "-1\nlist[0]=C\n"},
      {{"GetTimeSpan", "1130", "1045"}, "45\n"},
      {{"GetDayOfWeekString", "1"}, U(u8"日\n")},
      {{"ChangeFurigana", U(u8"やまだ　たろう"), "0", "0"}, U(u8"ﾔﾏﾀﾞ ﾀﾛｳ\n")},
      {{"SetGlobalSettingString", "GLOBAL", "ClinicName", U(u8"表計算ソ能\\")}, ""},
      {{"GetGlobalSettingString", "GLOBAL", "ClinicName", ""}, U(u8"表計算ソ能\\\n")},
  };
  for (const auto& each : cases) ExpectOut(each.arguments, each.out);
}

TEST_F(Kovacall, SendsNoticesAndMakesAnEmptyDatabase) {
  const std::string out = Folder() + "out/";
  std::filesystem::create_directory(folder_.Native() / "out");
  ExpectOut({"SendNotice", out, U(u8"..\\表"), U(u8"題"), U(u8"本文␊$_NOAPPLI ␊")}, "1\n");
  ExpectOut({"SendNotice", out, "++++++++++", "t", "b"}, "0\n");
  ExpectOut({"SendNotice", Folder() + "none/", "A", "t", "b"}, "1\n");
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.Native() / "out"))
    names.push_back(U(entry.path().filename().u8string().c_str()));
  ASSERT_EQ(names.size(), 1u);
  EXPECT_EQ(names[0].find(U(u8".._表_")), 0u) << names[0];
  EXPECT_TRUE(names[0].ends_with(".notice")) << names[0];
  ExpectOut({"AppliLastLoginStr", "20240101", "--now", "20240109"},
            U(u8"2024-1-1 00:00:00  (1週間以上前)\n"));
  ExpectOut({"AppliLastLoginStr", "202"}, "\n");
  ExpectOut({"DoCopyEmptyDB", Folder() + "new"}, "0\n");
  EXPECT_TRUE(std::filesystem::exists(folder_.Native() / "new" / "INDEXCONTROL.BTR"));
  ExpectOut({"DoCopyEmptyDB", Folder() + "new"}, "4\n");
}

TEST_F(Kovacall, EndsWithCodeTwoAndOneClearLine) {
  const struct {
    Arguments arguments;
    std::string part;  // of the line
  } cases[] = {
      {{}, "needs an operation"},
      {{"NoSuch"}, "NoSuch"},
      {{"RoundOff", "1"}, "takes 2 arguments, not 1"},
      {{"RoundOff", "1", "2.5", "3"}, "takes 2 arguments, not 3"},
      {{"RoundOff", "1", "2,5"}, "value"},
      {{"RoundOff", "32768", "2.5"}, "mode"},
      {{"GetDayOfWeekString", "1x"}, "weekday"},
      {{"IsNumeric", U(u8"𠮷")}, "932"},
      {{"CalcContribution", "1", "point=3"}, "point"},
      {{"CalcContribution", "1", "points"}, "field=value"},
      {{"ReservationToSale", "amount=2147483648"}, "amount"},
      {{"dump", "nosuch"}, "nosuch"},
      {{"dump", "sale", "--key", "9"}, "no key 9"},
      {{"put", "sale", "total=1"}, "saleNumber"},
      {{"put", "sale", "saleNumber=1234567890123"}, "longer than 12"},
      {{"put", "sale", U(u8"saleNumber=1"), U(u8"memo=𠮷")}, "932"},
      {{"delete", "saleitem", "1"}, "lineNumber"},
      {{"AppliLastLoginStr", "20240101", "--now", "2024"}, "TIME"},
  };
  for (const auto& each : cases) {
    const ProgramRun run = Call(each.arguments);
    EXPECT_EQ(run.code, 2) << testing::PrintToString(each.arguments);
    EXPECT_EQ(run.out, "") << testing::PrintToString(each.arguments);
    EXPECT_NE(run.err.find(each.part), std::string::npos) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  }
}

TEST_F(Kovacall, NeedsADatabaseThatOpens) {
  std::ofstream(folder_.Native() / "app.ini", std::ios::binary)
      << "[GLOBAL]\r\nDATABASE=" << folder_.Path() << "gone\r\n";
  const ProgramRun gone = Call({"ReservationToSale", "amount=1"});
  EXPECT_EQ(gone.code, 2);
  EXPECT_NE(gone.err.find("result 12"), std::string::npos) << gone.err;
  EXPECT_EQ(RunProgram(BuiltProgram("kovacall"), {"dump", "sale"}).code, 2);
  EXPECT_EQ(RunProgram(BuiltProgram("kovacall"), {"--app", Folder() + "no.ini", "list"}).code, 2);
}

TEST_F(Kovacall, ListsEveryOperationOfTheLibrary) {
  const ProgramRun run = Call({"list"});
  EXPECT_EQ(run.code, 0);
  for (const char* line : {"GetTaxRate date:text contractDate:text reduced:int -> real\n",
                           "cmpRecept a:int b:int -> int\n", "CmpAdd list:text... text:text -> int\n"})
    EXPECT_NE(run.out.find(line), std::string::npos) << line << run.out;
}

TEST_F(Kovacall, KeepsRecordsInJapanese) {
  const std::string name = U(u8"表　髙﨑ソ能 ␉x␊");
  ExpectOut({"put", "category", "classCode=5", "code=20", "sortOrder=02", "name=" + name}, "5\t20\n");
  ExpectOut({"put", "category", "classCode=5", "code=10", "sortOrder=03"}, "5\t10\n");
  ExpectOut({"put", "category", "classCode=5", "code=20"}, "3\n");
  const std::string title = "classCode\tcode\tname\tsortOrder\tmarker\n";
  const std::string twenty = "5\t20\t" + name + "\t02\t\n";
  ExpectOut({"dump", "category"}, title + "5\t10\t\t03\t\n" + twenty);
  ExpectOut({"dump", "category", "--key", "1", "--limit", "1"}, title + twenty);
  ExpectOut({"dump", "category", "--from", "5", "--from", "2"}, title + twenty);
  ExpectOut({"set", "category", "5", "20", "name=x", "marker=__"}, "0\n");
  ExpectOut({"dump", "category", "--from", "5", "--from", "11"}, title + "5\t20\tx\t02\t__\n");
  ExpectOut({"set", "category", "5", "30", "name=x"}, "1\n");
  ExpectOut({"delete", "category", "classCode=5", "code=20"}, "0\n");
  ExpectOut({"delete", "category", "5", "20"}, "1\n");
  const std::vector<std::string> history = Split(Call({"history", "category", "5", "20"}).out, '\n');
  ASSERT_EQ(history.size(), 3U);
  const std::vector<std::string> was = Split(history[1], '\t'), then = Split(history[2], '\t');
  EXPECT_EQ(was.at(0) + was.at(3) + was.at(6), "1overwritten" + name);
  EXPECT_EQ(then.at(0) + then.at(3) + then.at(6), "2deletedx");
  ExpectOut({"bring-back", "category", "1"}, "0\n");
  EXPECT_NE(Call({"history", "category", "5", "20"}).out.find("\nnow\t\t\t\t5\t20\t" + name), std::string::npos);
  ExpectOut({"bring-back", "category", "9"}, "1\n");
  ExpectOut({"delete", "category", "5", "20"}, "0\n");
  ExpectOut({"dump", "category"}, title + "5\t10\t\t03\t\n");
  ExpectOut({"check-db"}, "0\n");
  // A backup by its own word, and back.
  std::filesystem::create_directories(folder_.Native() / "backups");
  const ProgramRun made = Call({"backup", folder_.Argument() + "/backups"});
  ASSERT_TRUE(made.out.starts_with("0\nbackup=")) << made.out << made.err;
  const std::string backup = made.out.substr(9, made.out.find('\n', 9) - 9);
  ExpectOut({"delete", "category", "5", "10"}, "0\n");
  EXPECT_NE(Call({"restore", backup, folder_.Argument()}).out.find("kept="), std::string::npos);
  ExpectOut({"dump", "category"}, title + "5\t10\t\t03\t\n");
  EXPECT_NE(Call({"salvage", folder_.Argument(), folder_.Argument() + "/saved"}).out.find("category: 1 saved, 0 lost\n"),
            std::string::npos);
}

TEST_F(Kovacall, TurnsAFeeIntoASale) {
  for (const Arguments& record : {Arguments{"put", "creditcategory", "code=01"},
                                  {"put", "creditcategory", "code=02", "taxType=1"},
                                  {"put", "credititem", "categoryCode=01", "code=001", U(u8"name=能")},
                                  {"put", "credititem", "categoryCode=01", "code=002", "reducedRate=1"}})
    ASSERT_EQ(Call(record).code, 0);
  const struct {
    Arguments fee;
    std::string tax, total, taxable, normalTotal, reducedAmount, reducedTotal;
  } cases[] = {
      {{"saleDate=20191001", "categoryCode=01", "itemCode=001"}, "108", "1188", "1080", "1188", "0", "0"},
      {{"saleDate=20191001", "categoryCode=01", "itemCode=002"}, "86", "1166", "1080", "0", "1080", "1166"},
      {{"saleDate=20190930", "categoryCode=01", "itemCode=002"}, "86", "1166", "1080", "1166", "0", "0"},
      {{"saleDate=20191001", "categoryCode=02"}, "0", "1080", "0", "1080", "0", "0"},
      {{"saleDate=20191001", "noCategory=1", U(u8"itemText=表")}, "0", "1080", "0", "1080", "0", "0"},
  };
  int number = 0;
  for (const auto& each : cases) {
    Arguments call = {"ReservationToSale", "patientCode=7", "amount=1080"};
    call.insert(call.end(), each.fee.begin(), each.fee.end());
    ExpectOut(call, "0\nsaleNumber=00000000000" + std::to_string(++number) + "\n");
    auto sale = LastRecord("sale");
    EXPECT_EQ(sale["tax"], each.tax) << number;
    EXPECT_EQ(sale["total"], each.total) << number;
    EXPECT_EQ(sale["taxableAmount"], each.taxable) << number;
    EXPECT_EQ(sale["normalRateTotal"], each.normalTotal) << number;
    EXPECT_EQ(sale["reducedRateAmount"], each.reducedAmount) << number;
    EXPECT_EQ(sale["reducedRateTotal"], each.reducedTotal) << number;
    EXPECT_EQ(sale["saleKind"], "00") << number;
  }
  auto item = LastRecord("saleitem");
  EXPECT_EQ(item["itemText"], U(u8"表"));
  EXPECT_EQ(item["amount"], "1080");
}

// Through the library, the mail program and back to what a mail program would show.
TEST_F(Kovacall, PrintsAndChecksPrintData) {
  ExpectOut({"ReservationToSale", "patientCode=7", "amount=1080", "saleDate=20191001"},
            "0\nsaleNumber=000000000001\n");
  ASSERT_EQ(Call({"put", "patient", "patientCode=7", U(u8"name=能\u240A[page]")}).code, 0);
  const std::string base = Folder() + "r", missing = Folder() + "missing/r";
  ExpectOut({"CreatePrintTmp", base, "000000000001", "1"}, "0\n");
  ExpectOut({"check-print", base + ".tmp"}, "ok\nform=receipt\ncount=99\ncolumns=4\n");
  ExpectOut({"CreatePrintTmp", base, "2"}, "-4\n");
  ExpectOut({"CreatePrintTmp", missing, "000000000001"}, "-1\n");
  ExpectOut({"CreatePrintFile", "7", base}, "0\n");
  ExpectOut({"check-print", base}, "ok\nform=patient\ncount=79\ncolumns=0\n");
  ExpectOut({"CreatePrintFile", "7", missing}, "-1\n");
  ExpectOut({"check-print", Profile()}, "line 1: \"[page]\" is expected, not \"[GLOBAL]\"\n");
  ExpectOut({"DoLoadResData", "7"}, "0\n");
  ExpectOut({"CheckReduce", "0", "saleDate=20191001", "categoryReduced=1"}, "1\n");
  ExpectOut({"CheckReduce", "1", "saleDate=20190930", "categoryReduced=1"}, "0\n");
  EXPECT_EQ(Call({"check-print", missing}).code, 2);
}

TEST_F(Kovacall, SendsTheMailThatATemplateMakes) {
  namespace fs = std::filesystem;
  const fs::path templates = folder_.Native() / "templates";
  fs::create_directory(templates);
  std::ofstream(templates / "$mt.index", std::ios::binary) << "8";
  const std::string body = U(u8"表 $_PNAME様␍␊$_REDATE $_RETIME␍␊%s /STAFFID:x");
  ExpectOut({"SetReservationTemplate", "6", U(u8"来院"), "$_PNAME", body}, "0\n");
  ExpectOut({"GetReservationTemplate", "6"}, "0\n" + U(u8"name=来院\nsubject=$_PNAME\nbody=") + body + "\n");
  ExpectOut({"GetReservationTemplate", "7"}, "-1\n");
  ExpectOut({"GetNextTemplateNumber"}, "9\n");
  ExpectOut({"SaveTemplateTree", "0006"}, "0\n");
  ExpectOut({"LoadTemplateTree"}, "1\nlines[0]=0006\n");

  for (const Arguments& record : {Arguments{"put", "patient", "patientCode=7", U(u8"name=能 太郎")},
                                  {"put", "patient2", "patientCode=7", "mailAddress1=a@b.jp",
                                   "mailAddress3=c@d.jp", "mailPermission=1"},
                                  {"put", "reservation", "reservationNumber=000000000001", "patientCode=7",
                                   "reservationDate=20241124", "startTime=0930", "staffId=S1"}})
    ASSERT_EQ(Call(record).code, 0);
  ExpectOut(
      {"FillTemplate", "6", "000000000001"},
      "1\nto=a@b.jp,c@d.jp\n" + U(u8"subject=能 太郎\nbody=表 能 太郎様␍␊2024/11/24 09:30␍␊%s /STAFFID:x\n"));
  EXPECT_EQ(Call({"SendVisitMail", "2"}).code, 2);

  kova::testing::SetVariable("KOVA_OUTBOX", folder_.Native() / "outbox");
  fs::current_path(BuiltProgram("kovacall").parent_path());
  ExpectOut({"SendVisitMail", "000000000001"}, "1\n");
  ASSERT_EQ(Mails().size(), 1u);
  EXPECT_EQ(RunProgram(BuiltProgram("day"), {"--show-mail", Mails().front()}).out,
            U(u8"From: <practice@example.invalid>\nTo: a@b.jp, c@d.jp\nSubject: 能 太郎\n\n"
              u8"表 能 太郎様\n2024/11/24 09:30\n%s /STAFFID:x"));

  // The day's reservation mails, by a program that opens the practice itself.
  kova::testing::SetVariable("KOVA_APP_PROFILE", folder_.Native() / "app.ini");
  ExpectOut({"SendReservationMail", "", "20241124"}, "0\n");  // there is no template for it yet
  ExpectOut({"SetReservationTemplate", "1", "x", "x", "x"}, "0\n");
  ExpectOut({"SendReservationMail", "nobody@b.jp", "20241124"}, "1\n");
  ExpectOut({"SendReservationMail", "", "20241125"}, "1\n");
  EXPECT_EQ(Mails().size(), 1u);
  ExpectOut({"SendReservationMail", "nobody@b.jp,c@d.jp", "20241124"}, "1\n");
  EXPECT_EQ(Mails().size(), 2u);
}

TEST_F(Kovacall, PaysThroughTheBridgeAndTheChanger) {
  namespace fs = std::filesystem;
  fs::current_path(BuiltProgram("kovacall").parent_path());
  ExpectOut({"GetCashlessType"}, "0\n");
  std::ofstream(folder_.Native() / "CashlessOpt.sys", std::ios::binary) << "2\r\n";
  ExpectOut({"GetCashlessType"}, "2\n");
  fs::create_directory(folder_.Native() / "Cashless");
  kova::testing::SetVariable("KOVA_CASHLESS", folder_.Native() / "Cashless");
  EXPECT_NE(Call({"exchange", "start", "P1", "980", "4"}).out.find("state=-2"), std::string::npos);
  EXPECT_EQ(RunProgram(BuiltCompanion("CashlessBridge"), {"/WORK:0", "/RESULT:113", "/ONCE"}).code, 0);
  const std::string told = Call({"exchange", "tick", "P1"}).out;
  EXPECT_NE(told.find("code=113\n"), std::string::npos) << told;
  EXPECT_NE(told.find("outcome=not-paid\n"), std::string::npos) << told;
  EXPECT_TRUE(fs::is_empty(folder_.Native() / "Cashless"));

  // Money to be returned by a method whose name the changer must be told.
  for (const Arguments& record : {Arguments{"put", "category", "classCode=2", "code=01", U(u8"name=現金")},
                                  {"put", "sale", "saleNumber=1", "categoryCode=01", "changeAmount=-500"}})
    ASSERT_EQ(Call(record).code, 0);
  ASSERT_EQ(Call({"SetGlobalSettingInt", "GLOBAL", "CASHCHANGER_INIT", "0"}).code, 0);
  ExpectOut({"UseCashChanger", "1"}, "0\n");  // there is no changer
  std::ofstream(folder_.Native() / "app.ini", std::ios::binary | std::ios::app)
      << "[CASHCHANGER]\r\nOPTION=1\r\nDEVICE=R1\r\n";
  const fs::path drawer = folder_.Native() / "drawer.txt";
  kova::testing::SetVariable("KOVA_DRAWER", drawer);
  ExpectOut({"UseCashChanger", "1"}, "1\n");
  EXPECT_EQ(kova::testing::FileContent(drawer), "/AMOUNT:-500 /DEVICE:R1 /METHOD:現金\r\n");
}

TEST_F(Kovacall, FillsLists) {
  for (const Arguments& record :
       {Arguments{"put", "category", "classCode=1", "code=01", "name=" + U(u8"表")},
        {"put", "category", "classCode=1", "code=02", "name=" + U(u8"旧"), "marker=__"},
        {"put", "category", "classCode=2", "code=01", "name=" + U(u8"現金")},
        {"put", "creditcategory", "code=02", "name=" + U(u8"物販")},
        {"put", "credititem", "categoryCode=02", "code=001", "name=" + U(u8"歯ブラシ")},
        {"put", "introdr", "code=001", "kind=0", "name=" + U(u8"甲")}})
    ASSERT_EQ(Call(record).code, 0) << testing::PrintToString(record);
  std::ofstream(folder_.Native() / "freetblname.dat", std::ios::binary) << "a\r\n";
  const auto padded = [](const char8_t* name, std::size_t blanks, const char* codes) {
    return "text[0]=" + U(name) + std::string(blanks, ' ') + codes;
  };
  const std::string unit = U(u8"text[1]=表\ndata[1]=1 01\n"), retired = U(u8"text[2]=旧\ndata[2]=1 02\n");
  const std::tuple<Arguments, std::string> cases[] = {
      {{"EnumUnit", "01", "1"}, "0\ntext[0]=\ndata[0]=\n" + unit + "selected=1\n"},
      {{"EnumUnit", "02", "1"}, "0\ntext[0]=\ndata[0]=\n" + unit + retired + "selected=2\n"},
      {{"EnumUnit", "03", "1"}, "0\ntext[0]=\ndata[0]=\n" + unit + "selected=-1\n"},
      {{"EnumPaymentMethod", "01", "0"}, padded(u8"現金", 96, " 01") + "\nselected=0\n"},
      {{"EnumCreditItemsOf", "02", "001"},
       "0\n" + padded(u8"歯ブラシ", 92, "  02001") + "\ndata[0]=02 001\nselected=0\n"},
      {{"EnumIntroDoctor", "001", "0", "0"},
       "0\n" + padded(u8"甲", 18, " ") + "\ndata[0]=001\nselected=0\ndoctors[0]=001\n"},
      {{"EnumFreeTblName"}, "names[0]=a 0\n"},
  };
  for (const auto& [arguments, out] : cases) ExpectOut(arguments, out);
}

TEST_F(Kovacall, MovesOnTheBoard) {
  for (const Arguments& record :
       {Arguments{"put", "category", "classCode=5", "code=10", "name=" + U(u8"受付")},
        {"put", "patient", "patientCode=7", "caseNumber=12", "name=" + U(u8"能 太郎")},
        {"put", "reservation", "reservationNumber=1", "patientCode=7", "reservationDate=20241124",
         "startTime=0930", "hasFee=1", "feeNoCategory=1", "feeAmount=1080"}})
    ASSERT_EQ(Call(record).code, 0);
  const std::string names = "list\tkey\tstage\tcaption\n";
  ExpectOut({"board", "20241123"}, names);
  ExpectOut({"board", "20241124"}, names + U(u8"before\t1\t\t12   能 太郎\n"));
  for (const Arguments& refused : {Arguments{"board"},
                                   {"board", "2024112"},
                                   {"board-move", "20241124", "8131"},
                                   {"board-move", "20241124", "8135", "1"},
                                   {"board-move", "20241124", "8133", "1"},
                                   {"board-move", "20241124", "8131", "1", "2"}})
    EXPECT_EQ(Call(refused).code, 2) << testing::PrintToString(refused);

  // "outcome stage visited sale" of the one row; its times are those of the clock.
  const auto move = [&](const char* button) {
    const std::vector<std::string> lines = Split(Call({"board-move", "20241124", button, "1"}).out, '\n');
    const std::vector<std::string> values = Split(lines.back(), '\t');
    return values.size() == 7 ? values[1] + " " + values[2] + " " + values[5] + " " + values[6]
                              : lines.back();
  };
  EXPECT_EQ(move("8131"), "done 10 1 000000000001");
  EXPECT_EQ(move("8133"), "done 01 1 000000000001");
  ExpectOut({"SetFinishedDate", "7", "", "0"}, "0\n");
  EXPECT_EQ(LastRecord("patient")["finishedDate"], "20241124");
  EXPECT_EQ(move("8129"), "done 10 1 000000000001");
  ASSERT_EQ(Call({"put", "charge", "chargeNumber=1", "saleNumber=000000000001", "receipted=1"}).code, 0);
  EXPECT_EQ(move("8134"), "receipted 10 1 000000000001");
  ASSERT_EQ(Call({"set", "charge", "1", "receipted=0"}).code, 0);
  EXPECT_EQ(move("8134"), "done 00 0 ");
  EXPECT_EQ(LastRecord("patient")["finishedDate"], "");
  EXPECT_TRUE(LastRecord("sale").empty());
}

// On the list of one city that lies beside the programs.
TEST_F(Kovacall, LooksUpAddresses) {
  ExpectOut({"SearchAddressFormPost", U(u8"１００－０００１")}, U(u8"東京都千代田区千代田\n"));
  ExpectOut({"SearchPostFromAddress", U(u8"東京都 千代田区九段北1-2-3")}, "102-0073\n");
  ExpectOut({"SearchPostFromAddress", U(u8"大阪府")}, "\n");
  ExpectOut({"SearchAddressFormPost", "101004-6"}, U(u8"東京都千代田区神田多町\n"));
  const std::string several = Call({"SearchPostFromAddress", U(u8"東京都千代田区一")}).out;
  EXPECT_EQ(several, U(u8"\ncandidates[0]=102-0082\t東京都千代田区一番町\n"
                       u8"candidates[1]=100-0003\t東京都千代田区一ツ橋\n"
                       u8"candidates[2]=101-0003\t東京都千代田区一ツ橋\n"));
}

TEST_F(Kovacall, MakesAnAddressList) {
  const auto write = [&](const char* name, const std::string& content) {
    std::ofstream(folder_.Native() / name, std::ios::binary) << content;
  };
  const auto town = [](const char* code, const char8_t* name) {
    return "13101,\"100  \",\"" + std::string(code) + "\",\"\",\"\",\"\",\"" + U(u8"東京都") + "\",\"" +
           U(u8"千代田区") + "\",\"" + U(name) + "\",0,0,0,0,0,0\r\n";
  };
  const std::string list = Folder() + "Address.csv";
  write("one.csv", town("1000001", u8"千代田") + town("1000002", u8"皇居外苑"));
  write("two.csv", town("1000003", u8"一ツ橋（１丁目）") + town("1000002", u8"外苑"));
  ExpectOut({"import-address", Folder() + "one.csv", list}, "entries=2\n");
  ExpectOut(
      {"import-address", Folder() + "two.csv", list},
      U(u8"entries=2\nadded=1\n  1000003 東京都千代田区一ツ橋\nremoved=1\n  1000001 東京都千代田区千代田\n"
        u8"renamed=1\n  1000002 東京都千代田区皇居外苑 -> 東京都千代田区外苑\n"));
  const std::string before = kova::testing::FileContent(folder_.Native() / "Address.csv");
  write("cut.csv", town("1000001", u8"千代田").substr(0, 60));
  write("none.csv", "");
  for (const char* bad : {"cut.csv", "none.csv", "missing.csv"})
    EXPECT_EQ(Call({"import-address", Folder() + "one.csv", Folder() + bad, list}).code, 2) << bad;
  EXPECT_EQ(Call({"import-address", list}).code, 2);
  EXPECT_EQ(kova::testing::FileContent(folder_.Native() / "Address.csv"), before);
}

TEST_F(Kovacall, ShowsErasAndColumns) {
  ExpectOut({"era", "20190501"}, U(u8"era=令和\nyear=1\nmonth=5\nday=1\ntext=令和元年5月1日\nnote=(水)\n"));
  ExpectOut({"era", U(u8"平成"), "40", "13", "32"}, U(u8"year=2028\nmonth=13\nday=32\nnote=暦にない日付\n"));
  std::ofstream(folder_.Native() / "app.ini", std::ios::app | std::ios::binary)
      << "[Reserv]\r\nListHeaderID00=1\r\nListHeaderID01=0\r\nListWidth00=-80\r\nItem3=0\r\n";
  const std::string head = "position\tcolumn\twidth\tshown\n";
  ExpectOut({"columns", "Reserv"}, head + "0\t1\t80\t0\n1\t0\t100\t0\nItem3=0\n");
  ExpectOut({"columns", "Other", "1"}, head + "0\t0\t100\t0\n");
  for (const Arguments& refused : {Arguments{"era"},
                                   {"era", "2019-5-1"},
                                   {"era", "X", "1", "1", "1"},
                                   {"era", "S", "1", "1"},
                                   {"columns"},
                                   {"columns", "Reserv", "-1"}})
    EXPECT_EQ(Call(refused).code, 2) << testing::PrintToString(refused);
}

}  // namespace
