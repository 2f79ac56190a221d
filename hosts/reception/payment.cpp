#include "hosts/reception/payment.h"

#include "entry/kova_sub_tools.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {
namespace {

using store::GetText;
using store::PutText;

constexpr int kByPatientAndDate = 1;
constexpr char kCash[] = "01";  // payment method

bool IsOfDay(const tagSALE& sale, const std::string& patient, const std::string& date) {
  return GetText(sale.patientCode) == patient && GetText(sale.saleDate) == date;
}

/// Goes to the patient's last unpaid sale of the day.
bool FindUnpaid(CSaleDB& sales, const std::string& patient, const std::string& date) {
  sales.record = {};
  PutText(sales.record.patientCode, patient);
  PutText(sales.record.saleDate, date);
  std::string key(sales.record.patientCode, sizeof sales.record.patientCode);
  key.append(sales.record.saleDate, sizeof sales.record.saleDate);
  sales.SetKey(kByPatientAndDate);
  sales.SetKeyBuffer(key.data(), static_cast<unsigned long>(key.size()));
  for (int result = sales.GetLEEQ(); result == 0 && sales.IsEOF() == 0; result = sales.GetPREV()) {
    if (!IsOfDay(sales.record, patient, date)) return false;
    if (sales.record.total > 0 && sales.record.receivedAmount == 0) return true;
  }
  return false;
}

}  // namespace

std::string TakePayment(CWnd& window, CKovaDBSys& db, const std::string& patient, const std::string& date) {
  CSaleDB sales(nullptr, 0);
  if (sales.SetAssociatedDB(&db) != 0) return "データベースが使えません。";
  if (!FindUnpaid(sales, patient, date)) return "この日の、まだ支払われていない売上がありません。";
  tagSALE& sale = sales.record;
  const std::string amount = std::to_string(sale.total) + " 円";
  CString method;
  const int answer = CKovaSubTools::Payment(&window, sale.total, method, patient.c_str(), 0, 0);
  if (answer < 0) return "支払いは済んでいません（" + amount + "）。";
  const bool isCash = answer == 0;
  PutText(sale.categoryCode, isCash ? kCash : method.GetString());
  sale.receivedAmount = sale.total;
  // Somebody may have changed the sale while the terminal was at work: what was paid must not get lost.
  if (const int result = sales.UpdateIfUnchanged(); result != 0)
    return amount + " を受け取りましたが、売上を更新できません（" + std::to_string(result) + "）。";
  if (isCash) CKovaSubTools::UseCashChanger(&db, &sale);
  return amount + (isCash ? " を現金で受け取りました。" : " のキャッシュレス決済が完了しました。");
}

}  // namespace kova::hosts
