#pragma once

#include <afxwin.h>

#include <string>

#include "postal/address_choice.h"

namespace kova::entry {

/// Has the user choose in a dialog over a window of the host's (may be null); the chosen answer, empty when
/// none was chosen. `listAge` says how old the list is. Where there are no windows nothing is chosen.
std::string HostChooseAddress(CWnd* parent, postal::AddressChoice choice, const std::string& listAge);

}  // namespace kova::entry
