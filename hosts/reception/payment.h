#pragma once

#include <afxwin.h>

#include <string>

class CKovaDBSys;

namespace kova::hosts {

/// "会計": takes the payment of the patient's last sale of that day that is not paid yet, cash or cashless, and books
/// it. What came of it, for the user.
std::string TakePayment(CWnd& window, CKovaDBSys& db, const std::string& patient, const std::string& date);

}  // namespace kova::hosts
