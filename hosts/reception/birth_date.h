#pragma once

#include <afxwin.h>

#include <string>

#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {

/// "生年月日": asks for the patient's date of birth over the window `field` and stores it. Gives what to tell
/// the user, in code page 932; empty when the user gave none.
std::string EnterBirthDate(CWnd& field, CKovaDBSys& db, const std::string& patient);

}  // namespace kova::hosts
