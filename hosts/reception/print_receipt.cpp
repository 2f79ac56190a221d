#include "hosts/reception/print_receipt.h"

#include <windows.h>
#include <shellapi.h>

#include "entry/kova_sub_tools.h"
#include "platform/os/child_programs.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using store::GetText;

constexpr int kPatience = 30000;

/// The number of the patient's last sale, empty when there is none; 0, else the record store's result.
int ReadLastSale(CKovaDBSys& db, const std::string& patient, std::string& number) {
  store::On<CSaleDB> sales(db);
  return store::WalkBack(sales, CSaleDB::Key::ByPatient, {patient}, [&](const tagSALE& sale) {
    number = GetText(sale.saleNumber);
    return false;
  });
}

void Open(const std::string& file) {
  const std::u16string utf16 = text932::ToUtf16(file);
  const std::wstring wide(utf16.begin(), utf16.end());
  ShellExecuteW(nullptr, L"open", wide.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace

std::string PrintLastReceipt(CKovaDBSys& db, const std::string& patient) {
  if (patient.empty()) return "患者を選んでください。";
  std::string sale;
  if (const int result = ReadLastSale(db, patient, sale); result != 0)
    return "売上を読み込めません（" + std::to_string(result) + "）。";
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
