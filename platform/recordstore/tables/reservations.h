#pragma once

// Reservations, the list of those who wait for one, and the ways in which one is made.

#include "platform/recordstore/field_types.h"

#define KOVA_RESERVATION_FIELDS(F)                                                                      \
  F(RecordNumber, reservationNumber, "reservation number, twelve digits")                               \
  F(PatientCode, patientCode, "patient")                                                                \
  F(Date, reservationDate, "day")                                                                       \
  F(Time, startTime, "from")                                                                            \
  F(Time, endTime, "to")                                                                                \
  F(UInt8, status, "0 booked, 1 confirmed, 2 and more cancelled or moved: not on the board")            \
  F(UInt8, visited, "1: the patient has come")                                                          \
  F(Code2, stageCode, "empty or 00 before the visit, 01 accounting finished, else a stage (class 5)")   \
  F(Time, stageTime, "time of the last move on the board")                                              \
  F(Time, finishTime, "time at which accounting was finished")                                          \
  F(Code2, typeCode, "reservation type (category class 0)")                                             \
  F(Code2, unitCode, "unit (category class 1)")                                                         \
  F(Code2, doctorCode, "doctor")                                                                        \
  F(Text<10>, staffId, "staff who takes care of it")                                                    \
  F(Code2, reasonCode, "reason")                                                                        \
  F(Code2, wayCode, "way in which it was made")                                                         \
  F(FiveDates, earlierDates, "days that it had before it was changed, filled from the first")           \
  F(FiveTimes, earlierTimes, "times that it had on those days")                                         \
  F(RecordNumber, saleNumber, "sale made of it; empty for none")                                        \
  F(UInt8, hasFee, "1: a fee is taken at the visit")                                                    \
  F(UInt8, feeNoCategory, "1: the fee has no credit category")                                          \
  F(Code2, feeCategoryCode, "credit category of the fee")                                               \
  F(Code3, feeItemCode, "credit item of the fee")                                                       \
  F(Text<40>, feeText, "free text of the fee")                                                          \
  F(Int32, feeAmount, "fee in yen before tax")                                                          \
  F(Text<164>, memo, "memo")

#define KOVA_RESERVATIONSTANDBY_FIELDS(F)                             \
  F(RecordNumber, standbyNumber, "number on the waiting list")        \
  F(RecordNumber, reservationNumber, "reservation that it belongs to")\
  F(PatientCode, patientCode, "patient")                              \
  F(Date, wishedFrom, "from this day")                                \
  F(Date, wishedTo, "to this day")                                    \
  F(Code2, typeCode, "reservation type")                              \
  F(Text<100>, memo, "memo")

#define KOVA_RESERVATIONWAY_FIELDS(F) \
  F(Code2, code, "code")              \
  F(Name, name, "name")               \
  F(Code2, sortOrder, "order in lists") \
  F(Marker, marker, "begins with __: retired")

// Keys: number, name and fields. Key 0 is the primary key, the only unique one; a key buffer holds the fields one behind the
// other, each at its full width. Key numbers and widths are relied on by hosts; do not change.

#define KOVA_RESERVATION_KEYS(K) \
  K(0, Primary, "reservationNumber") \
  K(1, ByPatient, "patientCode reservationDate startTime") \
  K(2, ByDateAndUnit, "reservationDate unitCode startTime") \
  K(3, ByDateAndDoctor, "reservationDate doctorCode startTime") \
  K(4, BySale, "saleNumber") \
  K(6, ByDateAndTime, "reservationDate startTime")

#define KOVA_RESERVATIONSTANDBY_KEYS(K) \
  K(0, Primary, "standbyNumber") \
  K(1, ByReservation, "reservationNumber") \
  K(2, ByPatient, "patientCode wishedFrom")

#define KOVA_RESERVATIONWAY_KEYS(K) \
  K(0, Primary, "code") \
  K(1, InListOrder, "sortOrder code")

KOVA_RECORD(tagRESERVATION, KOVA_RESERVATION_FIELDS)
KOVA_RECORD(tagRESERVATIONSTANDBY, KOVA_RESERVATIONSTANDBY_FIELDS)
KOVA_RECORD(tagRESERVATIONWAY, KOVA_RESERVATIONWAY_FIELDS)
