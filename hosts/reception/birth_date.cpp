#include "hosts/reception/birth_date.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "entry/date_input.h"

namespace kova::hosts {
namespace {

bool IsRealDay(const CDateInput& date) {
  SYSTEMTIME day{};
  day.wYear = static_cast<WORD>(date.year);
  day.wMonth = static_cast<WORD>(date.month);
  day.wDay = static_cast<WORD>(date.day);
  FILETIME time{};
  return date.year <= 9999 && SystemTimeToFileTime(&day, &time);
}

}  // namespace

std::string EnterBirthDate(CWnd& field, CKovaDBSys& db, const std::string& patient) {
  CPatientDB patients(nullptr, 0);
  if (patients.SetAssociatedDB(&db) != 0 || patients.GetPatient1Data(patient.c_str()) != 0)
    return "患者を選んでください。";
  const int stored = std::atoi(std::string(store::GetText(patients.record.birthDate)).c_str());
  CDateInput input;
  input.year = stored / 10000;
  input.month = stored / 100 % 100;
  input.day = stored % 100;
  input.cover = &field;
  input.isBirth = true;
  if (input.DoModal() != 1) return {};
  // The popup lets everything through; what is kept here is a day of the calendar.
  if (!IsRealDay(input)) return "暦にない日付は登録できません。";
  char date[40];
  std::snprintf(date, sizeof date, "%04d%02d%02d", input.year, input.month, input.day);
  store::PutText(patients.record.birthDate, date);
  if (const int result = patients.UpdateIfUnchanged(); result != 0)
    return "生年月日を登録できません（" + std::to_string(result) + "）。";
  return std::string("生年月日を ") + date + " にしました。";
}

}  // namespace kova::hosts
