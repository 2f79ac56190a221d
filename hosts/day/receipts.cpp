#include "hosts/day/receipts.h"

#include <set>
#include <vector>

#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "hosts/day/columns.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using store::GetText;

constexpr int kByDate = 2;  // key of the sales

void Check(long status, const char* what) {
  if (status != 0) throw UsageError(std::string(what) + ": status " + std::to_string(status));
}

std::vector<tagSALE> SalesOf(CKovaDBSys& db, const std::string& date) {
  CSaleDB table(nullptr, 0);
  int result = table.SetAssociatedDB(&db);
  if (result == 0) result = table.SetKey(kByDate);
  if (result != 0) throw UsageError("the sales: result " + DescribeResult(result));
  table.SetKeyBuffer(date.data(), static_cast<unsigned long>(date.size()));
  std::vector<tagSALE> sales;
  for (result = table.GetGREQ(); result == 0 && GetText(table.record.saleDate) == date;
       result = table.GetNEXT())
    sales.push_back(table.record);
  return sales;
}

}  // namespace

void HandOverReceipts(Practice& practice, const std::string& date, const std::string& folder) {
  if (os::RealFiles().MakeFolders(folder) != os::FileOutcome::kOk)
    throw UsageError("cannot make the folder of the receipts");
  CKovaDBSys& db = practice.Database();
  CPatientDB patients(nullptr, 0);
  Check(patients.SetAssociatedDB(&db), "the patients");
  std::vector<std::vector<std::string>> rows;
  std::set<std::string> slips;
  for (const tagSALE& sale : SalesOf(db, date)) {
    const std::string number(GetText(sale.saleNumber));
    const std::string patient(GetText(sale.patientCode));
    const std::string base = os::JoinPath(folder, "receipt-" + number);
    Check(CKovaSubTools::CreatePrintTmpOfSale(&db, base.c_str(), 0, number.c_str()), "a receipt");
    if (patients.GetPatient1Data(patient.c_str()) != 0) continue;
    const std::string slip = os::JoinPath(folder, "appointments-" + patient + ".tmp");
    if (slips.insert(patient).second)
      Check(CKovaSubTools::CreatePrintFile(&db, &patients.record, CString(slip.c_str())),
            "an appointment slip");
    rows.push_back({number, text932::ToUtf8(GetText(patients.record.name)), std::to_string(sale.total)});
  }
  Print(FormatTable({{"receipt of sale"}, {"patient"}, {"total", true}}, rows));
}

}  // namespace kova::hosts
