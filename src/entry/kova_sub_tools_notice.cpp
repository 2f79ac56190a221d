// The operations of the exported class on notices and on a new practice's database.

#include "entry/host_wait.h"
#include "entry/kova_sub_tools.h"
#include "entry/session.h"
#include "mail/last_login.h"
#include "mail/notice.h"
#include "platform/os/clock.h"
#include "platform/os/network_adapter.h"
#include "platform/os/program.h"
#include "practice/database_folder.h"

using namespace kova;
using entry::Guarded;
using entry::View;

int CKovaSubTools::SendNotice(const char* folder, const char* applicationId, const char* title,
                              const char* body) {
  if (!mail::HasApplication(View(applicationId))) return 0;
  return Guarded(1, [&] {
    // A notice that cannot be written is silent, deliberately: the caller has nobody to tell.
    (void)mail::WriteNotice(os::RealFiles(), View(folder), {View(applicationId), View(title), View(body)},
                            os::NetworkAdapterAddress(), os::UtcMilliseconds());
    return 1;
  });
}

CString CKovaSubTools::AppliLastLoginStr(const char* stamp) {
  return Guarded(CString(), [&] {
    return entry::ToCString(mail::LastLoginText(View(stamp), os::LocalTime()).value_or(""));
  });
}

CString CKovaSubTools::GetMacAddressTest() {
  return Guarded(CString(), [] { return entry::ToCString(os::NetworkAdapterAddress()); });
}

int CKovaSubTools::DoCopyEmptyDB(const char* folder) {
  return Guarded(static_cast<int>(os::FileOutcome::kFailed), [&] {
    os::FileOutcome outcome = os::FileOutcome::kFailed;
    entry::HostWork(nullptr, "空のデータベース作成", [&](foundation::Progress& progress) {
      outcome = practice::CopyEmptyDatabase(os::RealFiles(), os::ProgramFolder(), View(folder), progress);
    });
    return static_cast<int>(outcome);
  });
}
