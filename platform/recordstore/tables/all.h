#pragma once

// Every table of the record store, in one list:
// T(id, short name, record structure, field list, key list, what it holds).

#include "platform/recordstore/tables/masters.h"
#include "platform/recordstore/tables/patients.h"
#include "platform/recordstore/tables/reservations.h"
#include "platform/recordstore/tables/sales.h"

#define KOVA_TABLES(T)                                                                                         \
  T(Patient, "patient", tagPATIENTDB, KOVA_PATIENT_FIELDS, KOVA_PATIENT_KEYS, "patients: what lists show")     \
  T(Patient2, "patient2", tagPATIENTDB2, KOVA_PATIENT2_FIELDS, KOVA_PATIENT2_KEYS, "patients: the second half")\
  T(Owner, "owner", tagOWNER, KOVA_OWNER_FIELDS, KOVA_OWNER_KEYS, "the practice itself")                       \
  T(CaseInfo, "caseinfo", tagCASEINFO, KOVA_CASEINFO_FIELDS, KOVA_CASEINFO_KEYS, "cases of a patient")         \
  T(Reservation, "reservation", tagRESERVATION, KOVA_RESERVATION_FIELDS, KOVA_RESERVATION_KEYS,                \
    "reservations")                                                                                            \
  T(ReservationStandby, "reservationstandby", tagRESERVATIONSTANDBY, KOVA_RESERVATIONSTANDBY_FIELDS,           \
    KOVA_RESERVATIONSTANDBY_KEYS, "patients who wait for a reservation")                                       \
  T(ReservationWay, "reservationway", tagRESERVATIONWAY, KOVA_RESERVATIONWAY_FIELDS, KOVA_RESERVATIONWAY_KEYS, \
    "ways in which reservations are made")                                                                     \
  T(Sale, "sale", tagSALE, KOVA_SALE_FIELDS, KOVA_SALE_KEYS, "sales")                                          \
  T(SaleItem, "saleitem", tagSALEITEM, KOVA_SALEITEM_FIELDS, KOVA_SALEITEM_KEYS, "items of sales")             \
  T(Charge, "charge", tagCHARGE, KOVA_CHARGE_FIELDS, KOVA_CHARGE_KEYS, "charges to collect")                   \
  T(Contract, "contract", tagCONTRACT, KOVA_CONTRACT_FIELDS, KOVA_CONTRACT_KEYS, "contracts")                  \
  T(ContractItem, "contractitem", tagCONTRACTITEM, KOVA_CONTRACTITEM_FIELDS, KOVA_CONTRACTITEM_KEYS,           \
    "instalments of contracts")                                                                                \
  T(Premium, "premium", tagPREMIUM, KOVA_PREMIUM_FIELDS, KOVA_PREMIUM_KEYS, "benefits for patients")           \
  T(Category, "category", tagCATEGORY, KOVA_CATEGORY_FIELDS, KOVA_CATEGORY_KEYS, "small code lists by class")  \
  T(Doctor, "doctor", tagDOCTOR, KOVA_DOCTOR_FIELDS, KOVA_DOCTOR_KEYS, "doctors")                              \
  T(Staff, "staff", tagSTAFF, KOVA_STAFF_FIELDS, KOVA_STAFF_KEYS, "who may log in")                            \
  T(CustomTbl, "customtbl", tagCUSTOMTBL, KOVA_CUSTOMTBL_FIELDS, KOVA_CUSTOMTBL_KEYS, "free tables")           \
  T(CreditCategory, "creditcategory", tagCREDITCATEGORY, KOVA_CREDITCATEGORY_FIELDS, KOVA_CREDITCATEGORY_KEYS, \
    "credit categories")                                                                                       \
  T(CreditItem, "credititem", tagCREDITITEM, KOVA_CREDITITEM_FIELDS, KOVA_CREDITITEM_KEYS, "credit items")     \
  T(CreditItemAmount, "credititemamount", tagCREDITITEMAMOUNT, KOVA_CREDITITEMAMOUNT_FIELDS,                   \
    KOVA_CREDITITEMAMOUNT_KEYS, "prices of credit items over time")                                            \
  T(IntroDr, "introdr", tagINTRODR, KOVA_INTRODR_FIELDS, KOVA_INTRODR_KEYS, "introducing doctors")             \
  T(Material, "material", tagMATERIAL, KOVA_CODE4_MASTER_FIELDS, KOVA_MASTER_KEYS, "materials")                \
  T(MaterialItem, "materialitem", tagMATERIALITEM, KOVA_MATERIALITEM_FIELDS, KOVA_MATERIALITEM_KEYS,           \
    "material items")                                                                                          \
  T(MaterialItemCate, "materialitemcate", tagMATERIALITEMCATE, KOVA_CODE4_MASTER_FIELDS, KOVA_MASTER_KEYS,     \
    "material item categories")                                                                                \
  T(Condition, "condition", tagCONDITION, KOVA_CODE2_MASTER_FIELDS, KOVA_MASTER_KEYS, "conditions")            \
  T(RecallGroup, "recallgroup", tagRECALLGROUP, KOVA_CODE2_MASTER_FIELDS, KOVA_MASTER_KEYS, "recall groups")   \
  T(ResReason, "resreason", tagRESREASON, KOVA_CODE2_MASTER_FIELDS, KOVA_MASTER_KEYS, "reasons of reservations")\
  T(ReceptCategory, "receptcategory", tagRECEPTCATEGORY, KOVA_CODE3_MASTER_FIELDS, KOVA_MASTER_KEYS,           \
    "categories on receipts")                                                                                  \
  T(TreatmentCategory, "treatmentcategory", tagTREATMENTCATEGORY, KOVA_CODE2_MASTER_FIELDS, KOVA_MASTER_KEYS,  \
    "treatment categories")                                                                                    \
  T(TreatmentItem, "treatmentitem", tagTREATMENTITEM, KOVA_TREATMENTITEM_FIELDS, KOVA_TREATMENTITEM_KEYS,      \
    "treatment items")                                                                                         \
  T(CaseCategory, "casecategory", tagCASECATEGORY, KOVA_CODE2_MASTER_FIELDS, KOVA_MASTER_KEYS,                 \
    "case categories")                                                                                         \
  T(Cases, "cases", tagCASES, KOVA_CASES_FIELDS, KOVA_CASES_KEYS, "kinds of case")
