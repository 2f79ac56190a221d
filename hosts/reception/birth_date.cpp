#include "hosts/reception/birth_date.h"

#include <cstdio>
#include <cstdlib>

#include "controls/era_date.h"
#include "entry/date_input.h"

namespace kova::hosts {
namespace {

using store::GetText;

controls::WesternDate DateOf(std::string_view stored) {
  const int number = std::atoi(std::string(stored).c_str());
  return {number / 10000, number / 100 % 100, number % 100};
}

}  // namespace

std::string StoredDateText(std::string_view date) { return controls::EraText(DateOf(date)); }

std::string EnterBirthDate(CWnd& field, CKovaDBSys& db, const std::string& patient) {
  CPatientDB patients(nullptr, 0);
  if (patients.SetAssociatedDB(&db) != 0 || patients.GetPatient1Data(patient.c_str()) != 0)
    return "患者を選んでください。";
  const controls::WesternDate stored = DateOf(GetText(patients.record.birthDate));
  CDateInput input;
  input.year = stored.year;
  input.month = stored.month;
  input.day = stored.day;
  input.cover = &field;
  input.isBirth = true;
  if (input.DoModal() != 1) return {};
  // The popup lets everything through; what is kept here is a day of the calendar.
  if (!foundation::IsRealDay({input.year, input.month, input.day})) return "暦にない日付は登録できません。";
  char date[40];
  std::snprintf(date, sizeof date, "%04d%02d%02d", input.year, input.month, input.day);
  store::PutText(patients.record.birthDate, date);
  if (const int result = patients.UpdateIfUnchanged(); result != 0)
    return "生年月日を登録できません（" + std::to_string(result) + "）。";
  return "生年月日を " + StoredDateText(date) + " にしました。";
}

}  // namespace kova::hosts
