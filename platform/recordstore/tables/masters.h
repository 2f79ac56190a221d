#pragma once

// Master tables: what the practice chooses from. A marker that begins with "__" retires a record.

#include "platform/recordstore/field_types.h"

// What every master record of a code and a name has.
#define KOVA_MASTER_FIELDS(F, CodeKind)     \
  F(CodeKind, code, "code")                 \
  F(Name, name, "name")                     \
  F(CodeKind, sortOrder, "order in lists")  \
  F(Marker, marker, "begins with __: retired")

#define KOVA_CATEGORY_FIELDS(F)                                                                         \
  F(Text<1>, classCode, "0 reservation type, 1 unit, 2 payment method, 3 insurance type, 5 stage, ...") \
  KOVA_MASTER_FIELDS(F, Code2)

#define KOVA_DOCTOR_FIELDS(F)       \
  KOVA_MASTER_FIELDS(F, Code2)      \
  F(Name, reading, "reading of the name (kana)") \
  F(Text<20>, phone, "telephone")

#define KOVA_STAFF_FIELDS(F)                     \
  F(Text<10>, staffId, "staff ID")               \
  F(Name, name, "name")                          \
  F(Name, reading, "reading of the name (kana)") \
  F(UInt8, privilege, "1 administrator, 0 user") \
  F(Marker, marker, "begins with __: retired")

#define KOVA_CUSTOMTBL_FIELDS(F)                                   \
  F(Code2, tableId, "free table; AA the staff list, 00 to 09 the patients' extra items") \
  KOVA_MASTER_FIELDS(F, Code4)

#define KOVA_CREDITCATEGORY_FIELDS(F)                              \
  KOVA_MASTER_FIELDS(F, Code2)                                     \
  F(UInt8, reducedRate, "non-zero: goods of the reduced tax rate") \
  F(Text<1>, taxType, "1 not taxed, 2 taxed, else as the practice's setting says") \
  F(Code3, receiptCategoryCode, "category on receipts, three digits")

#define KOVA_CREDITITEM_FIELDS(F)                                  \
  F(Code2, categoryCode, "credit category")                        \
  KOVA_MASTER_FIELDS(F, Code3)                                     \
  F(Name, printName, "name to print; empty for the name")          \
  F(UInt8, reducedRate, "non-zero: goods of the reduced tax rate") \
  F(UInt8, insuranceItem, "1: insured treatment, counted in points") \
  F(Int32, unitPrice, "unit price, or points of an insured item")

#define KOVA_CREDITITEMAMOUNT_FIELDS(F)       \
  F(Code2, categoryCode, "credit category")   \
  F(Code3, itemCode, "credit item")           \
  F(Date, fromDate, "price from this day on") \
  F(Int32, unitPrice, "unit price")

#define KOVA_INTRODR_FIELDS(F)                        \
  F(Text<1>, kind, "0 dentist, 1 physician, 2 other") \
  KOVA_MASTER_FIELDS(F, Code3)                        \
  F(Name, hospital, "practice or hospital")           \
  F(Text<80>, address, "address")                     \
  F(Text<20>, phone, "telephone")

#define KOVA_MATERIALITEM_FIELDS(F)                                \
  KOVA_MASTER_FIELDS(F, Code4)                                     \
  F(Code4, categoryCode, "material item category")                 \
  F(Int32, unitPrice, "unit price")                                \
  F(Int32, stock, "in stock")

#define KOVA_TREATMENTITEM_FIELDS(F)         \
  F(Code2, categoryCode, "treatment category") \
  KOVA_MASTER_FIELDS(F, Code3)               \
  F(Int32, points, "insurance points")

#define KOVA_CASES_FIELDS(F)             \
  F(Code2, categoryCode, "case category") \
  KOVA_MASTER_FIELDS(F, Code3)

#define KOVA_CODE2_MASTER_FIELDS(F) KOVA_MASTER_FIELDS(F, Code2)
#define KOVA_CODE3_MASTER_FIELDS(F) KOVA_MASTER_FIELDS(F, Code3)
#define KOVA_CODE4_MASTER_FIELDS(F) KOVA_MASTER_FIELDS(F, Code4)

// Keys: number, name and fields. Key 0 is the primary key, the only unique one; a key buffer holds the fields one behind the
// other, each at its full width. Key numbers and widths are relied on by hosts; do not change.

#define KOVA_CATEGORY_KEYS(K) \
  K(0, Primary, "classCode code") \
  K(1, InListOrder, "classCode sortOrder code")

#define KOVA_DOCTOR_KEYS(K) \
  K(0, Primary, "code") \
  K(1, InListOrder, "sortOrder code")

#define KOVA_STAFF_KEYS(K) \
  K(0, Primary, "staffId") \
  K(1, ByReading, "reading")

#define KOVA_CUSTOMTBL_KEYS(K) \
  K(0, Primary, "tableId code") \
  K(1, InListOrder, "tableId sortOrder code")

#define KOVA_CREDITCATEGORY_KEYS(K) \
  K(0, Primary, "code") \
  K(1, InListOrder, "sortOrder code")

#define KOVA_CREDITITEM_KEYS(K) \
  K(0, Primary, "categoryCode code") \
  K(1, InListOrder, "categoryCode sortOrder code")

#define KOVA_CREDITITEMAMOUNT_KEYS(K) \
  K(0, Primary, "categoryCode itemCode fromDate")

#define KOVA_INTRODR_KEYS(K) \
  K(0, Primary, "code") \
  K(1, InListOrder, "kind sortOrder code")

#define KOVA_MATERIALITEM_KEYS(K) \
  K(0, Primary, "code") \
  K(1, InListOrder, "categoryCode sortOrder code")

#define KOVA_TREATMENTITEM_KEYS(K) \
  K(0, Primary, "categoryCode code") \
  K(1, InListOrder, "categoryCode sortOrder code")

#define KOVA_CASES_KEYS(K) \
  K(0, Primary, "categoryCode code") \
  K(1, InListOrder, "categoryCode sortOrder code")

#define KOVA_MASTER_KEYS(K) \
  K(0, Primary, "code") \
  K(1, InListOrder, "sortOrder code")

KOVA_RECORD(tagCATEGORY, KOVA_CATEGORY_FIELDS)
KOVA_RECORD(tagDOCTOR, KOVA_DOCTOR_FIELDS)
KOVA_RECORD(tagSTAFF, KOVA_STAFF_FIELDS)
KOVA_RECORD(tagCUSTOMTBL, KOVA_CUSTOMTBL_FIELDS)
KOVA_RECORD(tagCREDITCATEGORY, KOVA_CREDITCATEGORY_FIELDS)
KOVA_RECORD(tagCREDITITEM, KOVA_CREDITITEM_FIELDS)
KOVA_RECORD(tagCREDITITEMAMOUNT, KOVA_CREDITITEMAMOUNT_FIELDS)
KOVA_RECORD(tagINTRODR, KOVA_INTRODR_FIELDS)
KOVA_RECORD(tagMATERIAL, KOVA_CODE4_MASTER_FIELDS)
KOVA_RECORD(tagMATERIALITEM, KOVA_MATERIALITEM_FIELDS)
KOVA_RECORD(tagMATERIALITEMCATE, KOVA_CODE4_MASTER_FIELDS)
KOVA_RECORD(tagCONDITION, KOVA_CODE2_MASTER_FIELDS)
KOVA_RECORD(tagRECALLGROUP, KOVA_CODE2_MASTER_FIELDS)
KOVA_RECORD(tagRESREASON, KOVA_CODE2_MASTER_FIELDS)
KOVA_RECORD(tagRECEPTCATEGORY, KOVA_CODE3_MASTER_FIELDS)
KOVA_RECORD(tagTREATMENTCATEGORY, KOVA_CODE2_MASTER_FIELDS)
KOVA_RECORD(tagTREATMENTITEM, KOVA_TREATMENTITEM_FIELDS)
KOVA_RECORD(tagCASECATEGORY, KOVA_CODE2_MASTER_FIELDS)
KOVA_RECORD(tagCASES, KOVA_CASES_FIELDS)
