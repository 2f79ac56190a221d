#pragma once

// Money: sales and their items, charges, contracts. Amounts are whole yen.

#include "platform/recordstore/field_types.h"

#define KOVA_SALE_FIELDS(F)                                                                             \
  F(RecordNumber, saleNumber, "sale number, twelve digits, given by InsertAdjustFee and never again")   \
  F(Date, saleDate, "date of the sale")                                                                 \
  F(PatientCode, patientCode, "patient")                                                                \
  F(Code2, saleKind, "00 fee taken at a reservation, 01 sale at the desk, 02 contract instalment")      \
  F(Code2, categoryCode, "payment method (category class 2)")                                           \
  F(RecordNumber, reservationNumber, "reservation that it was made of; empty for none")                 \
  F(UInt8, continuing, "1: sale under a continuing contract")                                           \
  F(Int32, total, "total with tax")                                                                     \
  F(Int32, tax, "tax")                                                                                  \
  F(Int32, taxableAmount, "amount that was taxed; 0 when the tax is 0")                                 \
  F(Int32, normalRateTax, "tax at the normal rate")                                                     \
  F(Int32, normalRateTotal, "total at the normal rate")                                                 \
  F(Int32, reducedRateAmount, "amount without tax at the reduced rate")                                 \
  F(Int32, reducedRateTax, "tax at the reduced rate")                                                   \
  F(Int32, reducedRateTotal, "total at the reduced rate")                                               \
  F(Int32, insuredAmount, "contribution to insured treatment")                                          \
  F(Int32, discount, "discount")                                                                        \
  F(Int32, receivedAmount, "received from the patient")                                                 \
  F(Int32, changeAmount, "change given")                                                                \
  F(Text<20>, receiptNumber, "receipt; empty while none was printed")                                   \
  F(Text<100>, memo, "memo")

#define KOVA_SALEITEM_FIELDS(F)                                                                         \
  F(RecordNumber, saleNumber, "sale")                                                                   \
  F(Code4, lineNumber, "line within the sale, 0001 and up")                                             \
  F(Date, saleDate, "date of the sale")                                                                 \
  F(Code2, categoryCode, "credit category")                                                             \
  F(Code3, itemCode, "credit item")                                                                     \
  F(UInt8, noCategory, "1: no credit category")                                                         \
  F(Text<40>, itemText, "free text")                                                                    \
  F(Name, itemName, "name of the item at the time of the sale")                                         \
  F(Name, printName, "name to print; empty for the item name")                                          \
  F(Code3, receiptCategoryCode, "category on receipts, three digits")                                   \
  F(UInt8, insuranceItem, "1: insured treatment, counted in points")                                    \
  F(UInt8, insuranceApplied, "1: self-paid line marked as covered by insurance")                        \
  F(UInt8, reducedRate, "1: taxed at the reduced rate")                                                 \
  F(Int32, unitPrice, "unit price, or points of an insured item")                                       \
  F(Int32, quantity, "quantity")                                                                        \
  F(Int32, amount, "amount")                                                                            \
  F(Text<40>, remark, "remark on the receipt")

#define KOVA_CHARGE_FIELDS(F)                                                                           \
  F(RecordNumber, chargeNumber, "charge number, twelve digits")                                         \
  F(RecordNumber, saleNumber, "sale whose amount it collects; empty for none")                          \
  F(PatientCode, patientCode, "patient")                                                                \
  F(Date, chargeDate, "date")                                                                           \
  F(Int32, points, "insurance points")                                                                  \
  F(Int32, burdenPercent, "patient's share in whole percent")                                           \
  F(Int32, publicAmount, "amount borne elsewhere; of a flat-amount charge the contribution itself")     \
  F(UInt8, flatAmountFlag, "1: the contribution is publicAmount as it stands")                          \
  F(Int32, addedAmount, "added after rounding")                                                         \
  F(Int32, amount, "amount to collect")                                                                 \
  F(Int32, receivedAmount, "amount collected")                                                          \
  F(UInt8, receipted, "1: a receipt was given for it")                                                  \
  F(Text<20>, receiptNumber, "that receipt")                                                            \
  F(Text<100>, memo, "memo")

#define KOVA_CONTRACT_FIELDS(F)                                       \
  F(PatientCode, patientCode, "patient")                              \
  F(RecordNumber, contractNumber, "contract number")                  \
  F(Date, contractDate, "concluded on; decides transitional tax rates")\
  F(Name, title, "what was contracted")                               \
  F(Int32, total, "amount without tax")                               \
  F(Int32, paid, "amount paid so far")                                \
  F(Text<100>, memo, "memo")

#define KOVA_CONTRACTITEM_FIELDS(F)                                   \
  F(RecordNumber, contractNumber, "contract")                         \
  F(Code4, lineNumber, "line within the contract, 0001 and up")       \
  F(Code2, categoryCode, "credit category")                           \
  F(Code3, itemCode, "credit item")                                   \
  F(Date, dueDate, "due on")                                          \
  F(Int32, amount, "amount")

#define KOVA_PREMIUM_FIELDS(F)                                        \
  F(Code4, code, "code")                                              \
  F(Name, name, "name of the benefit")                                \
  F(Int32, amount, "worth in yen")                                    \
  F(Int32, percent, "worth in whole percent")                         \
  F(Code2, sortOrder, "order in lists")                               \
  F(Marker, marker, "begins with __: retired")

// Keys: number, name and fields. Key 0 is the primary key, the only unique one; a key buffer holds the fields one behind the
// other, each at its full width. Key numbers and widths are relied on by hosts; do not change.

#define KOVA_SALE_KEYS(K) \
  K(0, Primary, "saleNumber") \
  K(1, ByPatient, "patientCode saleDate") \
  K(2, ByDate, "saleDate saleNumber") \
  K(3, ByReservation, "reservationNumber")

#define KOVA_SALEITEM_KEYS(K) \
  K(0, Primary, "saleNumber lineNumber")

#define KOVA_CHARGE_KEYS(K) \
  K(0, Primary, "chargeNumber") \
  K(1, ByPatient, "patientCode chargeDate") \
  K(2, BySale, "saleNumber")

#define KOVA_CONTRACT_KEYS(K) \
  K(0, Primary, "patientCode contractNumber") \
  K(1, ByContract, "contractNumber")

#define KOVA_CONTRACTITEM_KEYS(K) \
  K(0, Primary, "contractNumber lineNumber")

#define KOVA_PREMIUM_KEYS(K) \
  K(0, Primary, "code") \
  K(1, InListOrder, "sortOrder code")

KOVA_RECORD(tagSALE, KOVA_SALE_FIELDS)
KOVA_RECORD(tagSALEITEM, KOVA_SALEITEM_FIELDS)
KOVA_RECORD(tagCHARGE, KOVA_CHARGE_FIELDS)
KOVA_RECORD(tagCONTRACT, KOVA_CONTRACT_FIELDS)
KOVA_RECORD(tagCONTRACTITEM, KOVA_CONTRACTITEM_FIELDS)
KOVA_RECORD(tagPREMIUM, KOVA_PREMIUM_FIELDS)
