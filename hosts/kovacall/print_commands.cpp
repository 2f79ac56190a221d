#include "hosts/kovacall/print_commands.h"

#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "platform/os/files.h"
#include "platform/text932/cp932.h"
#include "printing/next_card.h"
#include "printing/print_data_reader.h"

namespace kova::hosts {
namespace {

using store::GetText;
using Arguments = std::vector<std::string>;

void Expect(const Arguments& arguments, std::size_t least, std::size_t most, const char* what) {
  if (arguments.size() < least || arguments.size() > most) throw UsageError(std::string("takes ") + what);
}

void RunCreatePrintTmp(const Arguments& arguments, Practice& practice) {
  Expect(arguments, 2, 3, "BASE SALENUMBER [FLAGS]");
  const auto flags = arguments.size() > 2
                         ? static_cast<unsigned>(NumberArgument(arguments[2], "FLAGS", 0, 0xFFFFFFFFLL))
                         : 0;
  const std::string base = TextArgument(AbsoluteName(arguments[0]), "BASE");
  const std::string sale = TextArgument(arguments[1], "SALENUMBER");
  const int status =
      CKovaSubTools::CreatePrintTmpOfSale(&practice.Database(), base.c_str(), flags, sale.c_str());
  Print(std::to_string(status) + "\n");
}

void RunCreatePrintFile(const Arguments& arguments, Practice& practice) {
  Expect(arguments, 2, 2, "PATIENT PATH");
  CPatientDB patients(nullptr, 0);
  int result = patients.SetAssociatedDB(&practice.Database());
  if (result == 0) result = patients.GetPatient1Data(TextArgument(arguments[0], "PATIENT").c_str());
  if (result != 0) throw UsageError("the patient: result " + DescribeResult(result));
  const std::string path = TextArgument(AbsoluteName(arguments[1]), "PATH");
  Print(std::to_string(CKovaSubTools::CreatePrintFile(&patients.record, CString(path.c_str()))) + "\n");
}

void RunDoLoadResData(const Arguments& arguments, Practice&) {
  Expect(arguments, 1, 1, "PATIENT");
  _NEXTCARDDATA card{};
  const int count = CKovaSubTools::DoLoadResData(TextArgument(arguments[0], "PATIENT").c_str(), &card);
  std::string text = std::to_string(count) + "\n";
  for (int i = 0; i < count; ++i) {
    const _NEXTCARD& next = card.appointments[i];
    text += "next[" + std::to_string(i) + "]=";
    for (const std::string_view part :
         {GetText(next.date), GetText(next.weekday), GetText(next.start), GetText(next.end),
          GetText(next.type), GetText(next.doctor), GetText(next.unit), GetText(next.reason)})
      text += ShowControls(text932::ToUtf8(part)) + "|";
    text.back() = '\n';
  }
  Print(text);
}

void RunCheckPrint(const Arguments& arguments, Practice&) {
  Expect(arguments, 1, 1, "FILE");
  std::string bytes;
  const os::FileOutcome outcome = os::RealFiles().Read(TextArgument(AbsoluteName(arguments[0]), "FILE"),
                                                       printing::kLargestPrintData, bytes);
  if (outcome == os::FileOutcome::kTooLarge)
    return Print("line 1: the file is larger than any print data file\n");
  if (outcome != os::FileOutcome::kOk) throw UsageError("cannot read the file " + ShowControls(arguments[0]));
  printing::PrintData data;
  const auto fault = printing::ReadPrintData(bytes, data);
  if (fault) return Print("line " + std::to_string(fault->line) + ": " + fault->reason + "\n");
  Print("ok\nform=" + std::string(data.form->hasReceiptParts ? "receipt" : "patient") + "\ncount=" +
        std::to_string(data.form->count) + "\ncolumns=" + std::to_string(data.columns.size()) + "\n");
}

}  // namespace

const std::vector<TableCommand>& PrintCommands() {
  static const std::vector<TableCommand> commands = {
      {"CreatePrintTmp", "BASE SALENUMBER [FLAGS]",
       "builds the receipt of a sale from the database and hands it over as BASE.tmp; prints the status, 0 "
       "for "
       "done. FLAGS 1: printed before",
       &RunCreatePrintTmp},
      {"CreatePrintFile", "PATIENT PATH", "writes a patient's form data to the file PATH; prints the status",
       &RunCreatePrintFile},
      {"DoLoadResData", "PATIENT", "prints the count of a patient's next appointments, and each of them",
       &RunDoLoadResData},
      {"check-print", "FILE",
       "reads a print data file strictly: \"ok\" and what it is, or the line and the reason why it is none",
       &RunCheckPrint},
  };
  return commands;
}

}  // namespace kova::hosts
