#include "printing/print_data.h"

#include <gtest/gtest.h>

#include "printing/print_data_reader.h"

namespace kova::printing {
namespace {

PrintData Receipt() {
  PrintData data;
  data.form = &FormOfReceipts();
  data.simple = {{1, "No.: 7"}, {3, "表 様"}, {99, "\\1,000"}};
  data.insurance[1] = "12点";
  data.columns = {{{"ソ[page]=%s", "", "1", ""}}, {{"b", "", "2", "x"}}};
  return data;
}

TEST(PrintData, TheLayoutOfAPatientFile) {
  PrintData data;
  data.simple = {{1, "7"}, {79, "z"}};
  const std::string bytes = WritePrintData(data);
  EXPECT_TRUE(
      bytes.starts_with("[page]\r\npagecount=1\r\n\r\n[startpage1]\r\n[SimpleData]\r\nCount=79\r\nData1=7\r\n"
                        "Data2=\r\n"));
  EXPECT_TRUE(bytes.ends_with("Data78=\r\nData79=z\r\n\r\n[endpage1]\r\n\r\n"));
  EXPECT_NE(bytes.find("Data29=\r\nData31=\r\n"), std::string::npos);
  EXPECT_NE(bytes.find("Data45=\r\nData51=\r\n"), std::string::npos);
}

TEST(PrintData, TheLayoutOfAReceipt) {
  const std::string bytes = WritePrintData(Receipt());
  for (const char* part : {"[SimpleData]\r\nCount=99\r\n", "Data31=\r\nData33=\r\n",
                           "Data61=\r\nData98=\r\nData99=\\1,000\r\n[InsData]\r\n",
                           "[InsData]\r\nCount=50\r\nData1=\r\nData2=12点\r\n",
                           "Data50=\r\n[ListData]\r\nListCount=1\r\n\r\n[ListData1]\r\nRowCount="
                           "1\r\nColumnCount=2\r\n\r\nData00101=ソ",
                           "Data00204=x\r\n\r\n[endpage1]\r\n\r\n"})
    EXPECT_NE(bytes.find(part), std::string::npos) << part;
  PrintData withTax = Receipt();
  withTax.simple[32] = "消費税(10%)";
  EXPECT_NE(WritePrintData(withTax).find("Data31=\r\nData32=消費税(10%)\r\nData33="), std::string::npos);
}

TEST(PrintData, AValueCannotBreakTheFile) {
  const struct {
    std::string value, plain;
  } rows[] = {
      {"a\r\nb\tc", "a  b c"},
      {std::string("a\0b", 3), "a b"},
      {"\x7F", " "},
      {"\x95\\", "\x95\\"},
      {"x\x95", "x "},
      {"\x95\n[page]", "  [page]"},
      {"\x81 y", "  y"},
      {"\xB1\xDD", "\xB1\xDD"},
      {"%s%n=[page]", "%s%n=[page]"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(PlainValue(row.value), row.plain);
    PrintData data = Receipt(), read;
    data.simple[5] = data.columns[0].rows[3] = data.insurance[49] = row.value;
    EXPECT_FALSE(ReadPrintData(WritePrintData(data), read).has_value());
    EXPECT_EQ(read.simple[5], row.plain);
    EXPECT_EQ(read.columns[0].rows[3], row.plain);
    EXPECT_EQ(read.insurance[49], row.plain);
    EXPECT_EQ(WritePrintData(read), WritePrintData(data));
  }
}

// Each row is one slip in a file that is right otherwise.
TEST(PrintDataReader, SaysLineAndReason) {
  const std::string right = WritePrintData(Receipt());
  const struct {
    std::string from, to;
    int line;
    std::string reason;
  } rows[] = {
      {"[page]\r\n", "", 1, "\"[page]\" is expected"},
      {"pagecount=1", "pagecount=2", 2, "\"pagecount=1\""},
      {"pagecount=1\r\n", "pagecount=1\n", 2, "CR LF"},
      {"Count=99", "Count=98", 6, "no form has the count 98"},
      {"Count=99", "Count=099", 6, "with a number is expected"},
      {"Count=99", "Count=100", 6, "greater than 99"},
      {"Data2=\r\n", "", 8, "\"Data2=\" is expected, not \"Data3="},
      {"Data61=", "Data62=", 66, "\"Data61=\""},
      {"Data9=\r\n", "Data9=\t\r\n", 15, "control character"},
      {"Data9=\r\n", "Data9=\x95\r\n", 15, "half a character"},
      {"Count=50", "Count=49", 70, "\"Count=50\""},
      {"ColumnCount=2", "ColumnCount=3", 136, "\"Data00301=\" is expected, not \"\""},
      {"ColumnCount=2", "ColumnCount=1", 132, "an empty line is expected, not \"Data00201=b\""},
      {"ColumnCount=2", "ColumnCount=1000", 126, "greater than 999"},
      {"[endpage1]\r\n\r\n", "[endpage1]\r\n", 138, "the file ends here"},
      {"[endpage1]\r\n\r\n", "[endpage1]\r\n\r\n\r\n", 139, "goes on behind its end"},
      {"[endpage1]\r\n\r\n", "[endpage1]", 137, "has no end"},
  };
  for (const auto& row : rows) {
    std::string wrong = right;
    wrong.replace(wrong.find(row.from), row.from.size(), row.to);
    PrintData read;
    const auto fault = ReadPrintData(wrong, read);
    ASSERT_TRUE(fault.has_value()) << row.to;
    EXPECT_EQ(fault->line, row.line) << row.from << " -> " << row.to;
    EXPECT_NE(fault->reason.find(row.reason), std::string::npos) << fault->reason;
    EXPECT_NE(read.form, nullptr);
  }
  for (std::size_t end = 0; end < right.size(); ++end) {
    PrintData read;
    EXPECT_TRUE(ReadPrintData(std::string_view(right).substr(0, end), read).has_value()) << end;
  }
}

}  // namespace
}  // namespace kova::printing
