#include "hosts/reception/payment.h"

#include "entry/kova_sub_tools.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"

namespace kova::hosts {
namespace {

using store::GetText;
using store::PutText;

constexpr char kCash[] = "01";  // payment method

/// Goes to the patient's last unpaid sale of the day.
int FindUnpaid(CSaleDB& sales, const std::string& patient, const std::string& date, bool& isFound) {
  return store::WalkBack(sales, CSaleDB::Key::ByPatient, {patient, date}, [&](const tagSALE& sale) {
    isFound = sale.total > 0 && sale.receivedAmount == 0;
    return !isFound;
  });
}

}  // namespace

std::string TakePayment(CWnd& window, CKovaDBSys& db, const std::string& patient, const std::string& date) {
  store::On<CSaleDB> sales(db);
  bool isFound = false;
  if (const int result = FindUnpaid(sales, patient, date, isFound); result != 0)
    return "売上を読み込めません（" + std::to_string(result) + "）。";
  if (!isFound) return "この日の、まだ支払われていない売上がありません。";
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
