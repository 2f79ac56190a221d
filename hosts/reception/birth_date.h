#pragma once

#include <afxwin.h>

#include <string>
#include <string_view>

#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {

/// "生年月日": asks for the patient's date of birth over the window `field` and stores it. Gives what to tell
/// the user, in code page 932; empty when the user gave none.
std::string EnterBirthDate(CWnd& field, CKovaDBSys& db, const std::string& patient);

/// A stored date YYYYMMDD by its era, "昭和50年1月1日"; empty when there is none.
std::string StoredDateText(std::string_view date);

}  // namespace kova::hosts
