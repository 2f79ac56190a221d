#include "hosts/day/receipts.h"

#include <set>
#include <vector>

#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "hosts/day/columns.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/text932/cp932.h"
#include "records/sales.h"

namespace kova::hosts {
namespace {

using store::GetText;

void Check(long status, const char* what) {
  if (status != 0) throw UsageError(std::string(what) + ": status " + std::to_string(status));
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
  std::vector<tagSALE> sales;
  Check(records::ReadSalesOfDay(&db, date, sales), "the sales");
  for (const tagSALE& sale : sales) {
    const std::string number(GetText(sale.saleNumber));
    const std::string patient(GetText(sale.patientCode));
    const std::string base = os::JoinPath(folder, "receipt-" + number);
    Check(CKovaSubTools::CreatePrintTmpOfSale(&db, base.c_str(), 0, number.c_str()), "a receipt");
    const int found = patients.GetPatient1Data(patient.c_str());
    if (found == static_cast<int>(store::Result::kNotFound)) continue;
    Check(found, "a patient");
    const std::string slip = os::JoinPath(folder, "appointments-" + patient + ".tmp");
    if (slips.insert(patient).second)
      Check(CKovaSubTools::CreatePrintFile(&db, &patients.record, CString(slip.c_str())),
            "an appointment slip");
    rows.push_back({number, text932::ToUtf8(GetText(patients.record.name)), std::to_string(sale.total)});
  }
  Print(FormatTable({{"receipt of sale"}, {"patient"}, {"total", true}}, rows));
}

}  // namespace kova::hosts
