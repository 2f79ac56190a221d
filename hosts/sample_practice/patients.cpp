#include "hosts/sample_practice/patients.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "entry/kova_sub_tools.h"
#include "hosts/sample_practice/batch.h"
#include "hosts/sample_practice/masters.h"
#include "hosts/sample_practice/names.h"

namespace kova::sample {
namespace {

using store::PutText;

/// Half-width katakana, as reception types readings. The few hundred parts are converted once each.
const std::string& Reading(const char* hiragana) {
  static std::map<std::string, std::string> known;
  const auto [at, isNew] = known.try_emplace(hiragana);
  if (isNew) at->second = CKovaSubTools::ChangeFurigana(hiragana, 0, 0).GetString();
  return at->second;
}

/// Given in braces, so that two random numbers are drawn in the order in which they stand.
struct Numbers {
  int first;
  int second = 0;
};

std::string Formatted(const char* format, Numbers numbers) {
  char text[64];
  std::snprintf(text, sizeof text, format, numbers.first, numbers.second);
  return text;
}

struct Visits {
  Day first = -1;
  Day last = -1;
};

std::vector<Visits> VisitsByPatient(const Plan& plan) {
  std::vector<Visits> visits(plan.joined.size());
  for (const Appointment& each : plan.appointments) {
    if (each.outcome != Outcome::kVisited && each.outcome != Outcome::kWaiting) continue;
    Visits& of = visits[static_cast<std::size_t>(each.patient)];
    if (of.first < 0) of.first = each.day;
    of.last = each.day;
  }
  return visits;
}

struct Person {
  std::string surname;
  int age;
  bool male;
};

/// Name, reading, sex and age; a child has a guardian of the same surname.
Person PutPerson(tagPATIENTDB& patient, Random& random) {
  Person person{{}, 0, random.Chance(47)};
  std::string givenReading, surnameReading, given;
  if (random.Chance(1)) {
    const WholeName& name = random.Pick(UnusualNames());
    person.male = name.male;
    person.surname = name.surname;
    surnameReading = Reading(name.surnameReading);
    given = name.given;
    givenReading = Reading(name.givenReading);
  } else {
    const NamePart& surname = random.PickCommon(Surnames());
    const NamePart& name = random.Pick(person.male ? MaleNames() : FemaleNames());
    person.surname = surname.text;
    surnameReading = Reading(surname.reading);
    given = name.text;
    givenReading = Reading(name.reading);
  }
  person.age = random.Chance(15) ? random.Between(1, 14) : random.Between(15, 92);
  PutText(patient.name, person.surname + "　" + given);
  PutText(patient.reading, surnameReading + " " + givenReading);
  patient.sexCode = person.male ? 1 : 2;
  const NamePart& parent = random.Pick(random.Chance(30) ? MaleNames() : FemaleNames());
  if (person.age < 15) PutText(patient.guardianName, person.surname + "　" + parent.text);
  if (!person.male && person.age > 24 && random.Chance(15))
    PutText(patient.maidenName, random.PickCommon(Surnames()).text);
  return person;
}

void PutAddress(tagPATIENTDB& patient, Random& random) {
  const Town& town = random.PickCommon(Towns());
  PutText(patient.postalCode, town.postalCode);
  const std::string block = Formatted("%d丁目%d番", {random.Between(1, 5), random.Between(1, 30)});
  const std::string house = Formatted("%d号", {random.Between(1, 20)});
  PutText(patient.address, std::string("東京都千代田区") + town.name + block + house);
  PutText(patient.phone, Formatted("0900-%02d-%04d", {random.Between(10, 99), random.Between(0, 9999)}));
  if (random.Chance(80))
    PutText(patient.mobilePhone,
            Formatted("0900-%02d-%04d", {random.Between(10, 99), random.Between(0, 9999)}));
}

/// What the practice knows of him beside his person.
void PutCare(tagPATIENTDB& patient, const Visits& visits, Day joined, Day today, Random& random) {
  PutText(patient.doctorCode, Formatted("%02d", {random.Between(1, kDoctors - 1)}));
  PutText(patient.insuranceTypeCode, Formatted("%02d", {random.Between(1, 5)}));
  if (random.Chance(60)) {
    PutText(patient.recallGroupCode, Formatted("%02d", {random.Between(1, 3)}));
    PutText(patient.recallMonth, DateText(today + random.Between(-60, 300)).substr(0, 6));
  }
  if (random.Chance(5)) PutText(patient.introDoctorCode, Formatted("%03d", {random.Between(1, 4)}));
  for (std::size_t table = 0; table < 3; ++table) {
    if (random.Chance(50)) PutText(patient.extraItems[table], Formatted("%02d", {random.Between(1, 3)}));
  }
  // Whoever joined before the two years had his first visit then.
  const Day first = visits.first < 0 ? joined : std::min(joined, visits.first);
  PutText(patient.firstVisitDate, DateText(first));
  PutText(patient.lastVisitDate, DateText(visits.last < 0 ? first : visits.last));
  if (random.Chance(40)) PutText(patient.finishedDate, store::GetText(patient.lastVisitDate));
  const bool application = random.Chance(20);
  PutText(patient.applicationId,
          application ? Formatted("A%04d%04d", {random.Between(0, 9999), random.Between(0, 9999)})
                      : "++++++++++");
  if (application && visits.last >= 0)
    PutText(patient.applicationLogin, DateText(visits.last) + TimeText(random.Between(420, 1380)) + "00");
  if (random.Chance(1)) PutText(patient.marker, "__");
  patient.neverListed = random.Below(200) == 0 ? 1 : 0;
}

void PutSecondHalf(tagPATIENTDB2& patient, const Person& person, int number, Random& random) {
  if (random.Chance(70)) PutText(patient.mailAddress1, Formatted("patient%05d@example.jp", {number}));
  if (random.Chance(10)) PutText(patient.mailAddress2, Formatted("p%05d@mobile.example.jp", {number}));
  patient.mailPermission = random.Chance(80) ? 1 : 0;
  PutText(patient.occupation, person.age < 15 ? "" : random.Pick(Occupations()));
  patient.burdenPercent = person.age >= 75 ? 10 : person.age < 6 ? 20 : 30;
  PutText(patient.insurerNumber, Formatted("%04d%04d", {random.Between(100, 9999), random.Between(0, 9999)}));
  PutText(patient.insuredNumber, Formatted("%d・%d", {random.Between(1, 999), random.Between(1, 99999)}));
  PutText(patient.medicalNotes, random.Pick(MedicalNotes()));
}

}  // namespace

std::string PatientCodeOf(int patient) { return Formatted("%010d", {patient + 1}); }

void WritePatients(CKovaDBSys& db, const Plan& plan, Day today, Random& random) {
  Bound<CPatientDB> first(db);
  Bound<CPatientDB2> second(db);
  const std::vector<Visits> visits = VisitsByPatient(plan);
  Batch batch(first.table);
  for (std::size_t i = 0; i < plan.joined.size(); ++i) {
    const int number = static_cast<int>(i);
    first->record = {};
    second->record = {};
    PutText(first->record.patientCode, PatientCodeOf(number));
    PutText(second->record.patientCode, PatientCodeOf(number));
    PutText(first->record.caseNumber, Formatted("%d", {number + 1}));
    const Person person = PutPerson(first->record, random);
    PutText(first->record.birthDate, DateText(today - person.age * 365 - random.Between(1, 364)));
    PutAddress(first->record, random);
    PutCare(first->record, visits[i], plan.joined[i], today, random);
    PutSecondHalf(second->record, person, number + 1, random);
    Check(first->Insert(), "a patient");
    Check(second->Insert(), "a patient's second half");
    batch.Next();
  }
  batch.Finish();
}

}  // namespace kova::sample
