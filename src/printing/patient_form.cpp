#include "printing/patient_form.h"

#include <cstdio>
#include <utility>

#include "platform/toollib/tools.h"
#include "printing/next_appointments.h"
#include "records/masters.h"

namespace kova::printing {
namespace {

using store::GetText;

constexpr std::uint8_t kMale = 1;
constexpr int kFirstExtraItem = 31;
constexpr int kFirstBlock = 52;
constexpr int kKeysOfBlock = 7;

std::string FromTo(std::string_view from, std::string_view to) {
  return std::string(from).append("～").append(to);
}

std::string IssueDate(const std::tm& now) {
  char text[64];
  std::snprintf(text, sizeof text, "発行日 %4d/%2d/%2d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
  return text;
}

std::string MonthText(std::string_view month) {
  std::string shown(month);
  return shown.size() == 6 ? shown.insert(4, "/") : shown;
}

class Keys {
 public:
  template <std::size_t Width>
  void Put(int key, const char (&text)[Width]) {
    keys_[key] = GetText(text);
  }
  void Put(int key, std::string text) { keys_[key] = std::move(text); }
  std::map<int, std::string> Take() { return std::move(keys_); }

 private:
  std::map<int, std::string> keys_;
};

void PutPatient(const PatientForm& form, Keys& keys) {
  const tagPATIENTDB& patient = form.patient;
  const std::string name(GetText(GetText(patient.name).empty() ? patient.otherName : patient.name));
  keys.Put(1, patient.caseNumber);
  keys.Put(2, name + " 様");
  keys.Put(3, name);
  keys.Put(19, patient.reading);
  keys.Put(23, patient.postalCode);
  keys.Put(24, patient.address);
  keys.Put(25, "0");  // deliberately a constant: forms test it
  keys.Put(26, form.doctor);
  keys.Put(27, form.insuranceType);
  keys.Put(28, patient.phone);
  keys.Put(29, patient.mobilePhone);
  for (std::size_t i = 0; i < form.extraItems.size(); ++i)
    keys.Put(kFirstExtraItem + static_cast<int>(i), form.extraItems[i]);
  keys.Put(41, CTools::MakeDate(GetText(patient.birthDate)));
  keys.Put(42, patient.sexCode == kMale ? "男" : "女");
  keys.Put(43, FromTo(CTools::MakeDate(GetText(patient.firstVisitDate)),
                      CTools::MakeDate(GetText(patient.lastVisitDate))));
  keys.Put(44, GetText(patient.guardianName).empty() ? patient.secondGuardianName : patient.guardianName);
  keys.Put(45, MonthText(GetText(patient.recallMonth)));
  keys.Put(51, patient.patientCode);
}

void PutClinicAndDay(const PatientForm& form, Keys& keys) {
  keys.Put(4, IssueDate(form.now));
  keys.Put(10, form.clinicName);
  keys.Put(11, form.clinicAddress);
  keys.Put(12, form.clinicTel);
  keys.Put(20, std::to_string(form.now.tm_year + 1900));
  keys.Put(21, std::to_string(form.now.tm_mon + 1));
  keys.Put(22, std::to_string(form.now.tm_mday));
}

void PutAppointments(const _NEXTCARDDATA& next, Keys& keys) {
  const _NEXTCARD& first = next.appointments[0];
  keys.Put(5, first.date);
  keys.Put(6, first.weekday);
  keys.Put(7, FromTo(first.start, first.end));
  keys.Put(8, first.type);
  keys.Put(9, first.doctor);
  const _NEXTCARD& second = next.appointments[1];
  keys.Put(13, second.date);
  keys.Put(14, second.weekday);
  keys.Put(15, second.unit);
  keys.Put(16, FromTo(second.start, second.end));
  keys.Put(17, second.type);
  keys.Put(18, second.doctor);
  int key = kFirstBlock;
  for (const _NEXTCARD& each : next.appointments) {
    keys.Put(key, each.date);
    keys.Put(key + 1, each.weekday);
    keys.Put(key + 2, FromTo(each.start, each.end));
    keys.Put(key + 3, each.type);
    keys.Put(key + 4, each.doctor);
    keys.Put(key + 5, each.unit);
    keys.Put(key + 6, each.reason);
    key += kKeysOfBlock;
  }
}

}  // namespace

bool ReadPatientForm(CKovaDBSys* db, const tagPATIENTDB& patient, const foundation::SettingsSnapshot& settings,
                     const std::tm& now, PatientForm& form) {
  if (!settings.IsReadable()) return false;
  const CKovaReads reads(db);
  MasterNames names(db);
  form.patient = patient;
  form.now = now;
  form.clinicName = settings.GetString("GLOBAL", "ClinicName", "");
  form.clinicAddress = settings.GetString("GLOBAL", "ClinicAddress", "");
  form.clinicTel = settings.GetString("GLOBAL", "ClinicTel", "");
  for (std::size_t i = 0; i < form.extraItems.size(); ++i) {
    char table[16];
    std::snprintf(table, sizeof table, "%02zu", i);
    form.extraItems[i] = names.FreeEntry(table, GetText(patient.extraItems[i]));
  }
  form.doctor = names.Doctor(GetText(patient.doctorCode));
  form.insuranceType = names.Category(records::kInsuranceTypes, GetText(patient.insuranceTypeCode));
  const int next = LoadNextAppointments(db, GetText(patient.patientCode), now, names, form.next);
  return next >= 0 && names.Failure() == 0;
}

PrintData MakePatientData(const PatientForm& form) {
  Keys keys;
  PutPatient(form, keys);
  PutClinicAndDay(form, keys);
  PutAppointments(form.next, keys);
  PrintData data;
  data.form = &FormOfPatients();
  data.simple = keys.Take();
  return data;
}

}  // namespace kova::printing
