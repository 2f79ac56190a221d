#pragma once

// Patients, in two tables: what every list shows, and what is read when one patient is opened.

#include "platform/recordstore/field_types.h"

#define KOVA_PATIENT_FIELDS(F)                                                                          \
  F(PatientCode, patientCode, "patient ID: the key of both patient tables")                             \
  F(Name, name, "name")                                                                                 \
  F(Name, reading, "reading of the name (kana)")                                                        \
  F(Name, otherName, "name to use where the name is empty")                                             \
  F(Name, maidenName, "maiden name")                                                                    \
  F(Text<10>, caseNumber, "case number (chart number); leads the visit flow board's caption")           \
  F(UInt8, sexCode, "1 male, otherwise female")                                                         \
  F(UInt8, neverListed, "1: never shown in a patient list")                                             \
  F(Date, birthDate, "date of birth")                                                                   \
  F(Text<8>, postalCode, "postal code, with or without hyphen")                                         \
  F(Text<80>, address, "address")                                                                       \
  F(Text<20>, phone, "telephone at home")                                                               \
  F(Text<20>, mobilePhone, "mobile telephone")                                                          \
  F(Name, guardianName, "guardian's name")                                                              \
  F(Name, secondGuardianName, "guardian's name to use where the first is empty")                        \
  F(Code2, doctorCode, "doctor in charge")                                                              \
  F(Code2, insuranceTypeCode, "insurance type (category class 3)")                                      \
  F(Code2, recallGroupCode, "recall group")                                                             \
  F(Text<6>, recallMonth, "month of the next recall, YYYYMM")                                           \
  F(Code3, introDoctorCode, "introducing doctor")                                                       \
  F(PatientCode, introPatientCode, "introducing patient")                                               \
  F(TenCodes, extraItems, "ten extra items: codes of the free tables 00 to 09")                         \
  F(Date, firstVisitDate, "first visit")                                                                \
  F(Date, lastVisitDate, "last visit")                                                                  \
  F(Date, finishedDate, "last day on which treatment was finished")                                     \
  F(Text<10>, applicationId, "ID of the patient's smartphone application; ++++++++++ for none")         \
  F(Text<14>, applicationLogin, "last login to the application, YYYYMMDDHHMMSS")                        \
  F(Marker, marker, "begins with __: retired")

#define KOVA_PATIENT2_FIELDS(F)                                                                         \
  F(PatientCode, patientCode, "patient ID")                                                             \
  F(Text<80>, mailAddress1, "first mail address")                                                       \
  F(Text<80>, mailAddress2, "second mail address")                                                      \
  F(Text<80>, mailAddress3, "third mail address")                                                       \
  F(Int32, mailPermission, "0: the patient receives no mail")                                           \
  F(Name, occupation, "occupation")                                                                     \
  F(Name, workplace, "place of work or school")                                                         \
  F(Text<20>, workplacePhone, "telephone there")                                                        \
  F(Name, emergencyName, "whom to call in an emergency")                                                \
  F(Text<20>, emergencyPhone, "telephone of that person")                                               \
  F(Int32, burdenPercent, "patient's share of insured treatment in whole percent")                      \
  F(Text<20>, insurerNumber, "insurer's number")                                                        \
  F(Text<40>, insuredNumber, "symbol and number of the insured")                                        \
  F(Text<200>, medicalNotes, "allergies, medication, illnesses")                                        \
  F(Text<200>, memo, "memo")

#define KOVA_OWNER_FIELDS(F)                                          \
  F(Code4, code, "code")                                              \
  F(Name, name, "the practice's owner")                               \
  F(Name, clinicName, "name of the practice")                         \
  F(Text<80>, address, "address")                                     \
  F(Text<8>, postalCode, "postal code")                               \
  F(Text<20>, phone, "telephone")                                     \
  F(Text<20>, registrationNumber, "registration number of a qualified invoice issuer")

#define KOVA_CASEINFO_FIELDS(F)                                       \
  F(PatientCode, patientCode, "patient")                              \
  F(Code4, caseCode, "number of the case within the patient")         \
  F(Code2, categoryCode, "case category")                             \
  F(Code3, kindCode, "kind of case")                                  \
  F(Date, startDate, "begun")                                         \
  F(Date, endDate, "ended; empty while it goes on")                   \
  F(Text<200>, memo, "memo")

// Keys: number, name and fields. Key 0 is the primary key, the only unique one; a key buffer holds the fields one behind the
// other, each at its full width. Key numbers and widths are relied on by hosts; do not change.

#define KOVA_PATIENT_KEYS(K) \
  K(0, Primary, "patientCode") \
  K(1, ByName, "name") \
  K(2, ByReading, "reading") \
  K(3, ByPatientCode, "patientCode")

#define KOVA_PATIENT2_KEYS(K) \
  K(0, Primary, "patientCode")

#define KOVA_OWNER_KEYS(K) \
  K(0, Primary, "code")

#define KOVA_CASEINFO_KEYS(K) \
  K(0, Primary, "patientCode caseCode")

KOVA_RECORD(tagPATIENTDB, KOVA_PATIENT_FIELDS)
KOVA_RECORD(tagPATIENTDB2, KOVA_PATIENT2_FIELDS)
KOVA_RECORD(tagOWNER, KOVA_OWNER_FIELDS)
KOVA_RECORD(tagCASEINFO, KOVA_CASEINFO_FIELDS)
