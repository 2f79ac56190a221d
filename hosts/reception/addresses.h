#pragma once

#include <afxwin.h>

#include <string>

namespace kova::hosts {

/// A small window that asks for a postal code and for an address, and has the library find each by the other.
/// Runs until it is closed.
void LookUpAddresses(CWnd& parent);

}  // namespace kova::hosts
