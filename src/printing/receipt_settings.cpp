#include "printing/receipt_settings.h"

namespace kova::printing {
namespace {

constexpr int kAsProfileSays = 2;

bool ShowsInsurancePrice(const foundation::SettingsSnapshot& settings,
                         const os::ApplicationProfile& profile) {
  const int mode = settings.GetInt("MENTE", "PrintInsPrice", kAsProfileSays);
  return (mode == kAsProfileSays ? profile.GetInt("KOVAMENTE", "PrintInsPrice", 0) : mode) != 0;
}

}  // namespace

ReceiptSettings ReadReceiptSettings(const foundation::SettingsSnapshot& settings,
                                    const os::ApplicationProfile& profile) {
  const auto isOn = [&](const char* key, int defaultValue) {
    return settings.GetInt("MENTE", key, defaultValue) != 0;
  };
  ReceiptSettings read;
  read.unitPrice = isOn("PrintUnitPrice", 0);
  read.unitPriceText = settings.GetString("MENTE", "PrintUnitPriceAddText", "@");
  read.taxMode = settings.GetInt("GLOBAL", "ConsumptionTax", 0);
  read.continuingTaxMode = settings.GetInt("GLOBAL", "ConsumptionTaxCont", read.taxMode);
  read.sumOfInsurance = isOn("PrintListSum", 1);
  read.sumsByTaxClass = isOn("PrintListSum2", 1);
  read.taxColumns = isOn("PrintListSum3", 1);
  read.reducedMarks = isOn("PrintListSum4", 0);
  read.insurancePrice = ShowsInsurancePrice(settings, profile);
  read.yenMarks = isOn("PrintListYen", 0);
  read.insurancePriceText = settings.GetString("MENTE", "PrintInsPriceAddText", "");
  read.clinicName = settings.GetString("GLOBAL", "ClinicName", "");
  read.clinicAddress = settings.GetString("GLOBAL", "ClinicAddress", "");
  read.clinicTel = settings.GetString("GLOBAL", "ClinicTel", "");
  read.registrationNumber = settings.GetString("GLOBAL", "ClinicRegNo", "");
  return read;
}

}  // namespace kova::printing
