#include "hosts/reception/print_receipt.h"

#include <windows.h>
#include <shellapi.h>

#include "entry/kova_sub_tools.h"
#include "platform/os/child_programs.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using store::GetText;

constexpr int kByPatient = 1;  // key of the sales
constexpr int kPatience = 30000;

/// The number of the patient's last sale; empty when there is none.
std::string LastSaleOf(CKovaDBSys& db, const std::string& patient) {
  CSaleDB sales(nullptr, 0);
  if (sales.SetAssociatedDB(&db) != 0 || sales.SetKey(kByPatient) != 0) return {};
  char key[sizeof sales.record.patientCode]{};
  store::PutText(key, patient);
  sales.SetKeyBuffer(key, sizeof key);  // a prefix: every date of the patient
  if (sales.GetLEEQ() != 0 || GetText(sales.record.patientCode) != patient) return {};
  return std::string(GetText(sales.record.saleNumber));
}

void Open(const std::string& file) {
  const std::u16string utf16 = text932::ToUtf16(file);
  const std::wstring wide(utf16.begin(), utf16.end());
  ShellExecuteW(nullptr, L"open", wide.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace

std::string PrintLastReceipt(CKovaDBSys& db, const std::string& patient) {
  if (patient.empty()) return "患者を選んでください。";
  const std::string sale = LastSaleOf(db, patient);
  if (sale.empty()) return "この患者には売上がありません。";
  const std::string folder = CKovaSubTools::GetTemporaryFolder().GetString();
  const std::string base = folder + "receipt-" + sale;
  if (CKovaSubTools::CreatePrintTmpOfSale(&db, base.c_str(), 0, sale.c_str()) != 0)
    return "領収書を作れませんでした。";
  // The form printer takes up what lies in the folder. A folder's name in quotation marks must not end in
  // "\".
  const std::string printer(CKovaSubTools::GetProgramFolder().GetString());
  const std::string line =
      printer + "Option\\FormPrinter.exe \"" + folder.substr(0, folder.size() - 1) + "\"";
  const os::ChildResult printed = os::RealChildPrograms().Run(line, kPatience);
  if (printed.outcome != os::ChildOutcome::kExited || printed.exitCode != 0)
    return "領収書 " + sale + " を渡しましたが、印刷プログラムが動きません。";
  Open(base + ".html");
  return "領収書 " + sale + " を印刷しました。";
}

}  // namespace kova::hosts
