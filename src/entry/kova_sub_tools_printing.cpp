// The printing operations of the exported class.

#include <cstdio>
#include <string>

#include "entry/kova_sub_tools.h"
#include "entry/session.h"
#include "foundation/folders.h"
#include "platform/os/clock.h"
#include "platform/recordstore/kovadbcall.h"
#include "printing/next_appointments.h"
#include "printing/patient_form.h"
#include "printing/receipt_lines.h"
#include "printing/receipt_of_sale.h"
#include "printing/receipt_print.h"

using namespace kova;
using entry::Guarded;
using entry::Session;
using entry::View;
using printing::PrintStatus;

namespace {

constexpr int kDone = static_cast<int>(PrintStatus::kDone);
constexpr int kNotWritten = static_cast<int>(PrintStatus::kNotWritten);

/// The practice's database that the application profile names. Where it cannot be opened everything in it is
/// missing.
struct OwnDatabase {
  explicit OwnDatabase(const Session& session) {
    (void)db.OpenDB(foundation::DatabaseFolder(session.profile).c_str());
  }
  CKovaDBSys db;
};

PrintStatus Print(const Session& session, std::string_view basePath, unsigned int flags,
                  const _TMPRECEIPT& receipt) {
  printing::PrintData data;
  const foundation::SettingsSnapshot settings = session.settings.Open();
  if (!settings.IsReadable()) return PrintStatus::kNoSettings;
  const PrintStatus made = printing::MakeReceiptData(receipt, settings, session.profile, flags, data);
  return made == PrintStatus::kDone ? printing::HandOver(session.files, basePath, data) : made;
}

std::string Today() {
  const std::tm now = os::LocalTime();
  char text[48];
  std::snprintf(text, sizeof text, "%04d%02d%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
  return text;
}

}  // namespace

int CKovaSubTools::CreatePrintTmp(CKovaDBSys*, const char* basePath, unsigned int flags,
                                  _TMPRECEIPT* receipt) {
  return Guarded(kNotWritten, [&] {
    if (receipt == nullptr || View(basePath).empty()) return static_cast<int>(PrintStatus::kBadReceipt);
    return static_cast<int>(Print(Session(), basePath, flags, *receipt));
  });
}

int CKovaSubTools::CreatePrintTmpOfSale(CKovaDBSys* db, const char* basePath, unsigned int flags,
                                        const char* saleNumber) {
  return Guarded(kNotWritten, [&] {
    if (View(basePath).empty()) return static_cast<int>(PrintStatus::kBadReceipt);
    const Session session;
    const foundation::SettingsSnapshot settings = session.settings.Open();
    if (!settings.IsReadable()) return static_cast<int>(PrintStatus::kNoSettings);
    printing::PreparedReceipt prepared;
    const int read = printing::ReadReceiptOfSale(db, settings, View(saleNumber), Today(), prepared);
    return static_cast<int>(read != 0 ? PrintStatus::kNoSale
                                      : Print(session, basePath, flags, prepared.receipt));
  });
}

long CKovaSubTools::CreatePrintFile(tagPATIENTDB* patient, const CString& path) {
  return Guarded(static_cast<long>(kNotWritten), [&] {
    OwnDatabase own{Session()};
    return CreatePrintFile(&own.db, patient, path);
  });
}

long CKovaSubTools::CreatePrintFile(CKovaDBSys* db, tagPATIENTDB* patient, const CString& path) {
  return Guarded(static_cast<long>(kNotWritten), [&]() -> long {
    if (patient == nullptr || path.IsEmpty()) return kNotWritten;
    const Session session;
    printing::PatientForm form;
    if (!printing::ReadPatientForm(db, *patient, session.settings.Open(), os::LocalTime(), form)) return kNotWritten;
    const std::string bytes = printing::WritePrintData(printing::MakePatientData(form));
    return session.files.Replace(path.GetString(), bytes) == os::FileOutcome::kOk ? kDone : kNotWritten;
  });
}

int CKovaSubTools::DoLoadResData(const char* patientCode, _NEXTCARDDATA* card) {
  if (card == nullptr) return -1;
  *card = {};
  const int count = Guarded(-1, [&] {
    OwnDatabase own{Session()};
    printing::MasterNames names(&own.db);
    return printing::LoadNextAppointments(&own.db, View(patientCode), os::LocalTime(), names, *card);
  });
  if (count < 0) *card = {};
  return count;
}

int CKovaSubTools::CheckReduce(_TMPSALEITEM* item, int) {
  return Guarded(0, [&] {
    return item != nullptr && printing::IsReducedRate(Session().settings.Open(), *item) ? 1 : 0;
  });
}
