#include "entry/kova_sub_tools.h"

#include <optional>
#include <string>
#include <string_view>

#include "charges/contributions.h"
#include "charges/receipt_rates.h"
#include "charges/rounding.h"
#include "charges/tax_periods.h"
#include "entry/session.h"
#include "foundation/folders.h"
#include "foundation/kana.h"
#include "foundation/text_tools.h"
#include "platform/os/input_method.h"
#include "platform/os/program.h"
#include "records/transaction.h"
#include "reservations/finished_date.h"
#include "reservations/reservation_to_sale.h"

using namespace kova;
using entry::Guarded;
using entry::Session;
using entry::ToCString;
using entry::View;

namespace {

CString Folder(std::string (*folder)(const os::ApplicationProfile&)) {
  return Guarded(CString(), [&] { return ToCString(folder(Session().profile)); });
}

CString ConnectionFolder(foundation::Connection connection) {
  return Guarded(CString(), [&] {
    Session session;
    return ToCString(foundation::ConnectionPath(session.profile, session.files, connection));
  });
}

charges::tagCONTRIBUTION ChargeOf(const void* charge) {
  return charge == nullptr ? charges::tagCONTRIBUTION{}
                           : *static_cast<const charges::tagCONTRIBUTION*>(charge);
}

std::optional<std::string_view> Optional(const char* text) {
  return text == nullptr ? std::nullopt : std::optional<std::string_view>(text);
}

}  // namespace

int CKovaSubTools::IsExistGlobalSettingFile() {
  return Guarded(0, [] { return Session().settings.Exists() ? 1 : 0; });
}

CString CKovaSubTools::GetGlobalSettingFile() {
  return Guarded(CString(), [] { return ToCString(Session().settings.FileName()); });
}

CString CKovaSubTools::GetGlobalSettingString(const char* section, const char* key,
                                              const char* defaultValue) {
  return Guarded(CString(defaultValue), [&] {
    return ToCString(Session().settings.Open().GetString(View(section), View(key), View(defaultValue)));
  });
}

void CKovaSubTools::SetGlobalSettingString(const char* section, const char* key, const char* value) {
  Guarded(0, [&] {
    (void)Session().settings.SetString(View(section), Optional(key), Optional(value));
    return 0;
  });
}

int CKovaSubTools::GetGlobalSettingInt(const char* section, const char* key, int defaultValue) {
  return Guarded(defaultValue,
                 [&] { return Session().settings.Open().GetInt(View(section), View(key), defaultValue); });
}

void CKovaSubTools::SetGlobalSettingInt(const char* section, const char* key, int value) {
  Guarded(0, [&] {
    (void)Session().settings.SetInt(View(section), View(key), value);
    return 0;
  });
}

int CKovaSubTools::GetGlobalOptSys(const char* fileName) {
  return Guarded(0, [&] { return Session().settings.OptSys(View(fileName)); });
}

CString CKovaSubTools::GetProgramFolder() {
  return Guarded(CString(), [] { return ToCString(os::ProgramFolder()); });
}

CString CKovaSubTools::GetInstallFolder() {
  return Guarded(CString(), [] { return ToCString(foundation::InstallFolder(os::ProgramFolder())); });
}

CString CKovaSubTools::GetTemporaryFolder() {
  return Guarded(CString(),
                 [] { return ToCString(foundation::TemporaryFolder(os::ProgramFolder(), os::RealFiles())); });
}

CString CKovaSubTools::GetTemplatesFolder() { return Folder(&foundation::TemplatesFolder); }

CString CKovaSubTools::GetPhotoPath() {
  return Guarded(CString(), [] {
    Session session;
    return ToCString(foundation::PhotoPath(session.profile, session.files));
  });
}

CString CKovaSubTools::GetPatientPhotoFolder(const char* patientId, int create) {
  return Guarded(CString(), [&] {
    Session session;
    return ToCString(
        foundation::PatientPhotoFolder(session.profile, session.files, View(patientId), create != 0));
  });
}

CString CKovaSubTools::GetFacePhotoPath(const char* patientId, int create) {
  return Guarded(CString(), [&] {
    Session session;
    return ToCString(foundation::FacePhotoPath(session.profile, session.files, View(patientId), create != 0));
  });
}

CString CKovaSubTools::GetGoogleConnectPath() { return ConnectionFolder(foundation::Connection::kGoogle); }
CString CKovaSubTools::GetWebConnectPath() { return ConnectionFolder(foundation::Connection::kWeb); }
CString CKovaSubTools::GetCheckInPath() { return ConnectionFolder(foundation::Connection::kCheckIn); }
int CKovaSubTools::IsGoogleConnect() { return GetGoogleConnectPath().IsEmpty() ? 0 : 1; }
int CKovaSubTools::IsWebConnect() { return GetWebConnectPath().IsEmpty() ? 0 : 1; }
int CKovaSubTools::IsCheckIn() { return GetCheckInPath().IsEmpty() ? 0 : 1; }

double CKovaSubTools::GetTaxRate(const char* date, const char* contractDate, int reduced) {
  return Guarded(0.0, [&] {
    const auto kind = reduced != 0 ? charges::RateKind::kReduced : charges::RateKind::kNormal;
    return charges::TaxRateOn(Session().settings.Open(), View(date), View(contractDate), kind);
  });
}

int CKovaSubTools::IsTaxReduce(const char* date) {
  return Guarded(0, [&] { return charges::IsTaxReduced(Session().settings.Open(), View(date)) ? 1 : 0; });
}

long CKovaSubTools::RoundOff(short mode, double value) { return charges::RoundOff(mode, value); }

long CKovaSubTools::GetRoundOffLong(double value) { return charges::GetRoundOffLong(value); }

long CKovaSubTools::CalcPartialContribution(void* charge, int roundMode) {
  return charges::CalcPartialContribution(ChargeOf(charge), roundMode);
}

long CKovaSubTools::CalcPublicContribution(void* charge, int roundMode) {
  return charges::CalcPublicContribution(ChargeOf(charge), roundMode);
}

void CKovaSubTools::CalcContribution(long* contribution, long* net, void* charge, int roundMode) {
  const charges::Contribution result = charges::CalcContribution(ChargeOf(charge), roundMode);
  if (contribution != nullptr) *contribution = result.contribution;
  if (net != nullptr) *net = result.net;
}

double CKovaSubTools::GetReceptRate(const char* date) {
  return Guarded(0.0, [&] { return charges::GetReceptRate(Session().settings.Open(), View(date)); });
}

int CKovaSubTools::GetReceptPercent(COleDateTime date) {
  return Guarded(0, [&] {
    const int number = charges::DateNumber(date.GetYear(), date.GetMonth(), date.GetDay());
    return charges::GetReceptPercent(Session().settings.Open(), number);
  });
}

int CKovaSubTools::cmpRecept(const void* a, const void* b) { return charges::cmpRecept(a, b); }

int CKovaSubTools::ReservationToSale(CKovaDBSys* db, void* feeRequest) {
  const int failed = static_cast<int>(store::Result::kFailed);
  if (feeRequest == nullptr) return static_cast<int>(store::Result::kBadArgument);
  return Guarded(failed, [&] {
    return reservations::ReservationToSale(Session().settings.Open(), db,
                                           *static_cast<tagFEEREQUEST*>(feeRequest));
  });
}

int CKovaSubTools::SetFinishedDate(const char* patientCode, const char* date, int mode) {
  return Guarded(static_cast<int>(store::Result::kFailed), [&] {
    CKovaDBSys db;
    CPatientDB patients(nullptr, 0);
    int result = db.OpenDB(foundation::DatabaseFolder(Session().profile).c_str());
    if (result == 0) result = patients.SetAssociatedDB(&db);
    if (result != 0) return result;
    return records::WhileInConflict([&] {
      records::Transaction transaction(patients);
      if (transaction.Begun() != 0) return transaction.Begun();
      const int put = mode != 0 ? reservations::PutFinishedDate(&db, View(patientCode), View(date))
                                : reservations::ResetFinishedDate(&db, View(patientCode));
      return put != 0 ? put : transaction.End();
    });
  });
}

int CKovaSubTools::IsNumeric(const char* text) { return foundation::IsNumeric(View(text)) ? 1 : 0; }

long CKovaSubTools::Str2Long(const char* text) {
  return Guarded(0L, [&] { return static_cast<long>(foundation::Str2Long(View(text))); });
}

CString CKovaSubTools::ChangeFurigana(const char* text, int kanaMode, int spaceFlag) {
  return Guarded(CString(),
                 [&] { return ToCString(foundation::ChangeFurigana(View(text), kanaMode, spaceFlag)); });
}

CString CKovaSubTools::GetFurigana(CWnd* edit, int kanaMode, int spaceFlag) {
  if (edit == nullptr || edit->m_hWnd == nullptr) return {};
  return Guarded(CString(), [&] {
#ifdef _WIN32
    const std::optional<os::CommittedInput> committed = os::SystemInputMethod().Committed(edit->m_hWnd);
#else
    const std::optional<os::CommittedInput> committed;  // no input method that a window could have
#endif
    if (!committed) return CString();
    return ToCString(foundation::ReadingOfCommit(committed->text, committed->reading, kanaMode, spaceFlag));
  });
}

short CKovaSubTools::GetTimeSpan(short later, short earlier) {
  return foundation::GetTimeSpan(later, earlier);
}

CString CKovaSubTools::GetDayOfWeekString(int weekday) {
  return Guarded(CString(), [&] { return ToCString(foundation::GetDayOfWeekString(weekday)); });
}

CString CKovaSubTools::GetPrivilegeName(int privilege) {
  return Guarded(CString(), [&] { return ToCString(foundation::GetPrivilegeName(privilege)); });
}

int CKovaSubTools::CmpAdd(CStringArray* list, const char* text) {
  if (list == nullptr) return -1;
  return Guarded(-1, [&] {
    return foundation::FindOrAppend(
        View(text), static_cast<std::size_t>(list->GetSize()),
        [&](std::size_t at) { return View(list->GetAt(static_cast<std::intptr_t>(at)).GetString()); },
        [&] { list->Add(text == nullptr ? "" : text); });
  });
}
