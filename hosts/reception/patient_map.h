#pragma once

#include <afxwin.h>

#include <string>

class CKovaDBSys;

namespace kova::hosts {

/// "患者分布図": the map of all patients of the practice, in the browser. What to tell the user.
std::string ShowPatientMap(CWnd& window, CKovaDBSys& db);

}  // namespace kova::hosts
