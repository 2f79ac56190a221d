#include "hosts/sample_practice/visits.h"

#include <algorithm>
#include <cstdio>

#include "hosts/sample_practice/batch.h"
#include "hosts/sample_practice/masters.h"
#include "hosts/sample_practice/patients.h"
#include "hosts/sample_practice/sales.h"

namespace kova::sample {
namespace {

using store::PutText;

std::string Number(const char* format, long long number) {
  char text[32];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

/// What was agreed when the appointment was made.
void PutBooking(tagRESERVATION& record, const Appointment& appointment, int slotMinutes, Random& random) {
  PutText(record.patientCode, PatientCodeOf(appointment.patient));
  PutText(record.reservationDate, DateText(appointment.day));
  PutText(record.startTime, TimeText(appointment.start));
  PutText(record.endTime, TimeText(appointment.start + slotMinutes));
  PutText(record.typeCode, Number("%02lld", random.Between(1, kReservationTypes)));
  PutText(record.unitCode, Number("%02lld", appointment.unit));
  PutText(record.doctorCode, Number("%02lld", (appointment.unit - 1) % (kDoctors - 1) + 1));
  PutText(record.staffId, Number("S%03lld", random.Between(1, kStaff - 1)));
  PutText(record.reasonCode, Number("%02lld", random.Between(1, kReasons)));
  PutText(record.wayCode, Number("%02lld", random.Between(1, 3)));
  if (random.Chance(8)) {
    PutText(record.earlierDates[0], DateText(appointment.day - random.Between(1, 20)));
    PutText(record.earlierTimes[0], TimeText(random.Between(18, 36) * 30));
  }
  if (random.Chance(3)) PutText(record.memo, "遅れる可能性あり");
}

/// How far the patient has come on the board.
void PutProgress(tagRESERVATION& record, const Appointment& appointment, Random& random) {
  const int arrival = std::max(0, appointment.start - random.Between(0, 15));
  const int leaving = appointment.start + random.Between(20, 70);
  switch (appointment.outcome) {
    case Outcome::kVisited:
      record.visited = 1;
      PutText(record.stageCode, "01");
      PutText(record.stageTime, TimeText(leaving));
      PutText(record.finishTime, TimeText(leaving));
      break;
    case Outcome::kWaiting:
      record.visited = 1;
      PutText(record.stageCode, kStages[random.Below(3)]);
      PutText(record.stageTime, TimeText(arrival));
      break;
    case Outcome::kCancelled:
      record.status = static_cast<std::uint8_t>(random.Between(2, 3));
      break;
    case Outcome::kAbsent:
      break;
    case Outcome::kBooked:
      record.status = static_cast<std::uint8_t>(random.Between(0, 1));
      break;
  }
}

/// A fee for the visit; most items belong to a category, a few fees are free text without one.
void PutFee(tagRESERVATION& record, Random& random) {
  const FeeItem& item = random.Pick(FeeItems());
  record.hasFee = 1;
  record.feeAmount = item.price;
  if (random.Chance(4)) {
    record.feeNoCategory = 1;
    PutText(record.feeText, "預り金");
    return;
  }
  PutText(record.feeCategoryCode, item.category);
  PutText(record.feeItemCode, item.code);
  if (random.Chance(10)) PutText(record.feeText, "ご家族分");
}

}  // namespace

void WriteVisits(CKovaDBSys& db, const Plan& plan, Random& random) {
  Bound<CReservationDB> table(db);
  SaleWriter sales(db);
  Batch batch(table.table);
  int waiting = 0;
  long long number = 0;
  for (const Appointment& each : plan.appointments) {
    table->record = {};
    PutText(table->record.reservationNumber, Number("%012lld", ++number));
    PutBooking(table->record, each, plan.slotMinutes, random);
    PutProgress(table->record, each, random);
    // Of those who wait to pay today, one in five has insured treatment only and no fee.
    const bool fee = each.outcome == Outcome::kWaiting ? ++waiting % 5 != 0 : random.Chance(35);
    if (fee) PutFee(table->record, random);
    if (each.outcome == Outcome::kVisited) sales.Write(table->record, random);
    Check(table->Insert(), "a reservation");
    batch.Next();
  }
  batch.Finish();
}

}  // namespace kova::sample
