#pragma once

#include <cstdint>
#include <string>

#include "foundation/settings.h"
#include "platform/os/application_profile.h"

namespace kova::printing {

/// What the practice wants on its receipts.
struct ReceiptSettings {
  bool unitPrice = false;           // lines of several pieces show their unit value
  std::string unitPriceText = "@";  // in front of it
  int taxMode = 0;                  // 1: tax is put on top of self-paid amounts, other: they include it
  int continuingTaxMode = 0;        // the same under a continuing contract
  bool sumOfInsurance = true;
  bool sumsByTaxClass = true;
  bool taxColumns = true;
  bool reducedMarks = false;
  bool insurancePrice = false;     // insurance lines show the patient's share beside the points
  bool yenMarks = false;           // in the list
  std::string insurancePriceText;  // behind the amount charged
  std::string clinicName, clinicAddress, clinicTel;
  std::string registrationNumber;  // of the issuer of qualified invoices
};

ReceiptSettings ReadReceiptSettings(const foundation::SettingsSnapshot& settings,
                                    const os::ApplicationProfile& profile);

}  // namespace kova::printing
