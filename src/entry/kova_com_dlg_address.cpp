#include <string>
#include <utility>

#include "entry/host_address_choice.h"
#include "entry/kova_com_dlg.h"
#include "entry/session.h"
#include "platform/os/clock.h"
#include "platform/os/program.h"
#include "postal/address_choice.h"
#include "postal/address_list.h"
#include "postal/address_lookup.h"

using namespace kova;
using entry::Guarded;
using entry::ToCString;

namespace {

using Lookup = postal::Candidates (*)(os::Files&, std::string_view fileName, std::string_view text);

CString LookUp(CWnd* parent, Lookup lookup, const CString& text) {
  return Guarded(CString(), [&] {
    os::Files& files = os::RealFiles();
    const std::string fileName = postal::AddressFileName(os::ProgramFolder());
    postal::Candidates found = lookup(files, fileName, text.GetString());
    if (const auto sure = found.SureAnswer()) return ToCString(*sure);
    std::tm written{};
    if (files.LastWritten(fileName, written) != os::FileOutcome::kOk) written = {};
    return ToCString(entry::HostChooseAddress(parent, postal::AddressChoice(std::move(found)),
                                              postal::ListAgeText(written, os::LocalTime())));
  });
}

}  // namespace

CString CKovaComDlg::SearchAddressFormPost(CWnd* parent, CString postalCode, int) {
  return LookUp(parent, &postal::AddressesOfCode, postalCode);
}

CString CKovaComDlg::SearchPostFromAddress(CWnd* parent, CString address, CString, int) {
  return LookUp(parent, &postal::CodesOfAddress, address);
}
