#pragma once

#include <windows.h>

namespace kova::hosts {

/// A small window on a postal code and an address, in which the library finds each by the other. Runs until
/// it is closed.
void LookUpAddresses(HWND parent);

}  // namespace kova::hosts
