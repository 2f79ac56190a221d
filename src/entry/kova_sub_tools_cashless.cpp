#include <cstdlib>

#include "cashless/changer_program.h"
#include "cashless/payment_entry.h"
#include "entry/host_payment_dialogs.h"
#include "entry/host_wait.h"
#include "entry/kova_sub_tools.h"
#include "entry/payment_session.h"
#include "entry/session.h"
#include "platform/os/paths.h"
#include "platform/recordstore/table.h"
#include "platform/toollib/tools.h"
#include "records/masters.h"

using namespace kova;
using entry::Guarded;
using entry::HostPaymentDialogs;
using entry::Session;
using entry::View;
using store::GetText;

namespace {

class PaymentMethodTable final : public cashless::PaymentMethods {
 public:
  explicit PaymentMethodTable(CKovaDBSys* db) : db_(db) {}

  bool Read(std::string_view code, std::optional<std::string>& name) override {
    store::On<CCategoryDB> categories(db_);
    const std::string methods(records::kPaymentMethods);
    const int result = categories.GetCategoryData(methods.c_str(), std::string(code).c_str());
    if (result == 0) name = GetText(categories.record.name);
    return store::FoundOrNone(result) == 0;
  }

 private:
  CKovaDBSys* db_;
};

/// Money takes its time: the host's windows stay alive meanwhile.
class PatientChanger final : public cashless::CashChanger {
 public:
  explicit PatientChanger(cashless::CashChanger& changer) : changer_(changer) {}

  int Exchange(std::int32_t amount, const std::optional<std::string>& method) override {
    int answer = 0;
    entry::HostWait("つり銭機の処理が終わるのを待っています。",
                    [&] { answer = changer_.Exchange(amount, method); });
    return answer;
  }

 private:
  cashless::CashChanger& changer_;
};

}  // namespace

std::string entry::HostPaymentJournal() {
  const CWinApp* app = AfxGetApp();
  if (app == nullptr || app->m_pszProfileName == nullptr) return {};
  const std::string name = app->m_pszProfileName;
  if (name.find('\\') != std::string::npos) return cashless::JournalPath(name);
  const char* local = std::getenv("LOCALAPPDATA");
  return local == nullptr ? std::string() : cashless::JournalPath(os::JoinPath(local, name));
}

unsigned CKovaSubTools::GetCashlessType() {
  return Guarded(0U, [] { return cashless::CashlessType(Session().settings); });
}

int CKovaSubTools::CashlessOrCash(CWnd* parent, long amount, unsigned type, int flag) {
  return Guarded(0, [&] {
    HostPaymentDialogs dialogs(parent, type);
    return static_cast<int>(cashless::CashlessOrCash(dialogs, static_cast<std::int32_t>(amount), type, flag));
  });
}

int CKovaSubTools::CallCashless(CWnd* parent, long amount, CString& result, const char* text) {
  return Guarded(0, [&] {
    const unsigned type = GetCashlessType();
    HostPaymentDialogs dialogs(parent, type);
    std::string shown;
    const bool paid =
        cashless::CallCashless(dialogs, static_cast<std::int32_t>(amount), type, View(text), shown);
    result = entry::ToCString(shown);
    return paid ? 1 : 0;
  });
}

int CKovaSubTools::Payment(CWnd* parent, long amount, CString& result, const char* text, int offersChoice,
                           int cashlessOnly) {
  return Guarded(-1, [&] {
    const unsigned type = GetCashlessType();
    HostPaymentDialogs dialogs(parent, type);
    const bool hasChanger =
        cashless::HasCashChanger(CTools::GetCashChangerOption(nullptr), Session().profile);
    std::string shown = result.GetString();
    const auto answer = cashless::Payment(
        dialogs, {static_cast<std::int32_t>(amount), View(text), offersChoice != 0, cashlessOnly != 0},
        hasChanger, type, shown);
    result = entry::ToCString(shown);
    return static_cast<int>(answer);
  });
}

int CKovaSubTools::UseCashChanger(CKovaDBSys* db, tagSALE* sale) {
  if (sale == nullptr) return 0;
  return Guarded(0, [&] {
    const Session session;
    std::string device;
    const unsigned option = CTools::GetCashChangerOption(&device);
    cashless::ChangerProgram changer(os::RealChildPrograms(), device);
    PatientChanger waited(changer);
    PaymentMethodTable methods(db);
    return cashless::UseCashChanger(waited, option, session.profile, session.settings,
                                    {sale->changeAmount, GetText(sale->categoryCode)}, methods);
  });
}
